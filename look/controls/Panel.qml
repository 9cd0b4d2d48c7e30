import Corvane.Look
import QtQuick

// The filled and outlined ground of fields and of what stands on a card like one.
Rectangle {
    id: root

    property color outline: Theme.line

    radius: 9
    color: Theme.card
    antialiasing: true

    // A border of the fill's own rectangle would be laid over what is beneath the fill.
    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.width: 1
        border.color: root.outline
        antialiasing: true
    }
}
