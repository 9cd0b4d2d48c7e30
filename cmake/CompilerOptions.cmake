# Warnings for code that is written here; generated QML code is left out of it.
add_library(corvane_warnings INTERFACE)
target_compile_options(corvane_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${CORVANE_WERROR}>:-Werror>
)

# Qt's keywords (signals, slots, emit) clash with other libraries' names; casts from char* hide
# encodings.
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

if(CORVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
else()
    add_compile_options($<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2> -fstack-protector-strong)
endif()

add_link_options(LINKER:-z,relro,-z,now LINKER:--as-needed)
add_compile_options($<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
add_link_options($<$<CONFIG:Release>:LINKER:--gc-sections>)
include(CheckPIESupported)
check_pie_supported()

# Takes the warnings off the registration and QML cache code that Qt generates for a module.
function(corvane_exempt_generated_code target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
