import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A plain field of one line.
FieldFrame {
    id: root

    // The field's name for assistive technology.
    required property string label
    property alias text: input.text
    signal edited(string text)

    line: input
    empty: input.text === "" && input.preeditText === ""

    TextInput {
        id: input

        width: parent.width
        font: Theme.term(10)
        color: Theme.ink
        selectionColor: Qt.alpha(Theme.green, 0.4)
        selectedTextColor: Theme.ink
        selectByMouse: true
        activeFocusOnTab: true
        onTextEdited: root.edited(input.text)
        Accessible.role: Accessible.EditableText
        Accessible.name: root.label
        Accessible.description: root.placeholder
    }
}
