import QtQuick

// A piece of text that assistive technology can read. Nothing is ever interpreted as markup.
Text {
    id: root

    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: root.text === ""
}
