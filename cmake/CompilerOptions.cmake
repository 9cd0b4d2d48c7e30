# Warnings for the code of this repository; generated QML code is exempt.
add_library(corvane_warnings INTERFACE)
target_compile_options(corvane_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${CORVANE_WERROR}>:-Werror>
)

# Qt's keywords (signals, slots, emit) clash with other libraries' names; casts from char* hide
# encodings.
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

# "ON" stands for the address and undefined behaviour sanitizers, "thread" for the thread sanitizer.
if(CORVANE_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(CORVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    if(CORVANE_FUZZ)
        # Instruments edges and comparisons for libFuzzer; has no effect on other programs.
        add_compile_options(-fsanitize=fuzzer-no-link)
    endif()
else()
    # Hardening against exploitation of memory errors. A test checks the built program for it.
    add_compile_options(
        $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=3> -D_GLIBCXX_ASSERTIONS
        -fstack-protector-strong -fstack-clash-protection -ftrivial-auto-var-init=zero)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
        add_compile_options(-fcf-protection=full)
        # Debian's start-up objects are not marked as compatible with a shadow stack.
        add_link_options(LINKER:-z,shstk)
    elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
        add_compile_options(-mbranch-protection=standard)
    endif()
endif()

add_link_options(LINKER:-z,relro,-z,now LINKER:--as-needed)
add_compile_options($<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
add_link_options($<$<CONFIG:Release>:LINKER:--gc-sections>)
include(CheckPIESupported)
check_pie_supported()

# Disables warnings for the registration and QML cache code that Qt generates for a module.
function(corvane_exempt_generated_code target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
endfunction()

# Precompiles the headers that most sources of a target include. Off by default, so that a plain build
# finds sources that do not include what they use.
option(CORVANE_PRECOMPILED_HEADERS "Compile common headers once for each target" OFF)
if(CORVANE_PRECOMPILED_HEADERS AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # A compiler cache compares precompiled headers byte by byte.
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
endif()
function(corvane_precompile target)
    if(CORVANE_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/common_headers.h" ${ARGN})
    endif()
endfunction()
