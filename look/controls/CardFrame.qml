import Corvane.Look.Controls
import QtQuick

// A card: its rows one below the other, within the card's margins.
Item {
    id: root

    required property real topMargin
    required property real bottomMargin
    property alias spacing: stack.spacing
    default property alias rows: stack.data

    readonly property real sideMargin: 28

    implicitHeight: root.topMargin + stack.implicitHeight + root.bottomMargin

    Stack {
        id: stack

        x: root.sideMargin
        y: root.topMargin
        width: root.width - 2 * root.sideMargin
    }
}
