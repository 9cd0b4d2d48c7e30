import Corvane.Look
import QtQuick

// The filled and outlined background of fields and similar boxes on a card.
Rectangle {
    id: root

    property color outline: Theme.line

    radius: 9
    color: Theme.card
    antialiasing: true

    // A separate rectangle: Rectangle's own translucent border would not blend with the fill, but
    // with what is below it.
    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.width: 1
        border.color: root.outline
        antialiasing: true
    }
}
