import Corvane.Look.Controls
import QtQuick

// A card: its rows one below the other, within the card's margins.
Item {
    id: root

    required property real topMargin
    required property real bottomMargin
    property alias spacing: stack.spacing
    default property alias rows: stack.data
    // The field that takes the caret when the card appears, if any.
    property Item firstField: null
    // Where somebody at the keyboard starts; by default at the first control of the card.
    property Item firstControl: null
    // The card has changed its content, and the keyboard focus starts anew.
    signal restarted

    // Goes one step back within the card; false if there is none.
    function goBack() {
        return false;
    }

    readonly property real sideMargin: 28

    implicitHeight: root.topMargin + stack.implicitHeight + root.bottomMargin

    Stack {
        id: stack

        x: root.sideMargin
        y: root.topMargin
        width: root.width - 2 * root.sideMargin
    }
}
