import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A field below its label.
Stack {
    id: root

    required property string label
    required property string placeholder
    property alias text: field.text
    readonly property string shown: field.shown
    property alias invalid: field.invalid
    property alias problem: field.problem
    // Width of the field; the label may be longer.
    property real fieldWidth: root.width
    readonly property Item field: field
    signal edited(string text)

    function takeFocus() {
        field.takeFocus();
    }

    spacing: 4

    Label {
        text: root.label
        font: Theme.term(8, Theme.Bold, 1.4)
        color: Theme.muted
        // The label is the field's accessible name already.
        Accessible.ignored: true
    }

    TextField {
        id: field

        width: root.fieldWidth
        label: root.label
        placeholder: root.placeholder
        onEdited: text => root.edited(text)
    }
}
