import Corvane.Look
import QtQuick

// Marks the control with keyboard focus.
Rectangle {
    id: root

    anchors.fill: parent
    anchors.margins: -2
    radius: 6
    color: "transparent"
    border.width: 1.5
    border.color: Qt.alpha(Theme.green, 0.75)
    antialiasing: true
}
