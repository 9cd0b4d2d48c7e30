cmake_minimum_required(VERSION 3.25)

# Finds colours outside look/. Views must take their colours from the theme.
# Usage: cmake -DROOT=<source folder> -P CheckColours.cmake
file(GLOB views "${ROOT}/island/*.qml" "${ROOT}/panes/*.qml" "${ROOT}/onboarding/*.qml"
    "${ROOT}/app/*.qml")
if(NOT views)
    message(FATAL_ERROR "no views found under ${ROOT}: wrong folder?")
endif()
set(violations "")
foreach(view IN LISTS views)
    file(STRINGS "${view}" lines REGEX "\"#[0-9A-Fa-f]+\"|Qt\\.rgba\\(|color: \"[a-z]+\"")
    foreach(line IN LISTS lines)
        # Black is allowed: the island must match a black screen edge, and filled buttons have
        # black text.
        if(NOT line MATCHES "color: \"black\"")
            list(APPEND violations "${view}: ${line}")
        endif()
    endforeach()
endforeach()
if(violations)
    list(JOIN violations "\n" text)
    message(FATAL_ERROR "${text}")
endif()
