cmake_minimum_required(VERSION 3.25)

# Finds text items that could interpret markup, because some texts come from servers. Views must use Label,
# the only type that sets the text format.
# Usage: cmake -DROOT=<source folder> -P CheckPlainText.cmake
set(label "${ROOT}/look/controls/Label.qml")
file(STRINGS "${label}" plain REGEX "^    textFormat: Text\\.PlainText$")
if(NOT plain)
    message(FATAL_ERROR "${label}: its text is not plain")
endif()
set(checked 0)
set(violations "")
foreach(folder app core island keys look onboarding panes platform)
    file(GLOB_RECURSE files "${ROOT}/${folder}/*.qml" "${ROOT}/${folder}/*.h" "${ROOT}/${folder}/*.cpp")
    list(REMOVE_ITEM files "${label}")
    foreach(file IN LISTS files)
        math(EXPR checked "${checked} + 1")
        file(STRINGS "${file}" lines REGEX
            "(^|[^A-Za-z0-9_])Text *({|$)|textFormat|TextEdit|TextArea|(Rich|Styled|Auto|Markdown)Text|setHtml")
        foreach(line IN LISTS lines)
            # A signal of TextInput, which interprets no markup.
            if(NOT line MATCHES "onTextEdited")
                list(APPEND violations "${file}: ${line}")
            endif()
        endforeach()
    endforeach()
endforeach()
if(checked LESS 50)
    message(FATAL_ERROR "only ${checked} files found under ${ROOT}: wrong folder?")
endif()
if(violations)
    list(JOIN violations "\n" text)
    message(FATAL_ERROR "${text}")
endif()
