import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Secrets
import QtQuick

// A masked field of one line.
FieldFrame {
    id: root

    required property SecretText secret

    line: input
    empty: input.empty
    // Qt reports no name and no description for password fields.
    Accessible.role: Accessible.Grouping
    Accessible.name: root.placeholder

    SecretField {
        id: input

        width: parent.width
        secret: root.secret
        font: Theme.term(10)
        color: Theme.ink
        selectionColor: Qt.alpha(Theme.green, 0.4)
        Accessible.role: Accessible.EditableText
        Accessible.passwordEdit: true
    }
}
