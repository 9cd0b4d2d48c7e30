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

    SecretField {
        id: input

        width: parent.width
        label: root.placeholder
        secret: root.secret
        font: Theme.term(10)
        color: Theme.ink
        selectionColor: Qt.alpha(Theme.green, 0.4)
        Accessible.role: Accessible.EditableText
    }
}
