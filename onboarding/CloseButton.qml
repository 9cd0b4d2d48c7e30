import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// The round button that closes the window.
Item {
    id: root

    signal triggered

    implicitWidth: 12
    implicitHeight: 12

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: Theme.red
        antialiasing: true
    }

    Pictogram {
        anchors.centerIn: parent
        visible: area.pointedAt || area.activeFocus
        symbol: Pictogram.XMark
        fontSize: 6
        color: "black"
    }

    PressArea {
        id: area

        anchors.fill: parent
        // Enlarges the click area: twelve points are hard to hit.
        anchors.margins: -5
        label: "Close"
        radius: 11
        onTriggered: root.triggered()
    }
}
