import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A plain field of one line. What it shows is the value of its owner, whatever changes either: every
// change of the line is reported by `edited`, and `text` is shown again where the owner makes
// something else of it.
FieldFrame {
    id: root

    // The field's name for assistive technology.
    required property string label
    // The owner's value.
    property string text
    // What is wrong with the value, for assistive technology; the owner shows it.
    property string problem: ""
    // What can be read in the field, including what an input method has not committed yet.
    readonly property string shown: input.displayText
    // The line is no longer `text`, which the owner now sets.
    signal edited(string text)

    function takeFocus() {
        input.forceActiveFocus(Qt.TabFocusReason);
    }

    function show() {
        input.showing = true;
        input.text = root.text;
        input.showing = false;
    }

    function report() {
        if (input.text !== root.text) {
            root.edited(input.text);
            root.show();
        }
    }

    line: input
    empty: input.text === "" && input.preeditText === ""
    onTextChanged: {
        root.show();
        // What was left out of the owner's text is reported after the change of that text.
        if (input.text !== root.text)
            Qt.callLater(root.report); // qmllint disable
    }

    TextInput {
        id: input

        property bool showing: false

        width: parent.width
        font: Theme.term(10)
        color: Theme.ink
        selectionColor: Qt.alpha(Theme.green, 0.4)
        selectedTextColor: Theme.ink
        selectByMouse: true
        activeFocusOnTab: true
        validator: PlainLine {}
        // Also for changes by assistive technology, for which there is no `textEdited`.
        onTextChanged: {
            if (!input.showing)
                root.report();
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: root.label
        Accessible.description: root.problem === "" ? root.placeholder : root.problem
    }
}
