import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import QtQuick

// Stands in for every pane until the user has proved presence once.
Item {
    id: root

    required property IslandController island

    implicitHeight: 40 + mark.implicitHeight + 14 + title.implicitHeight + 14 + unlock.implicitHeight + 46

    BreathingMark {
        id: mark

        y: 40
        anchors.horizontalCenter: parent.horizontalCenter
        size: 26
        color: Theme.green
        period: 1.8
    }

    Label {
        id: title

        anchors.top: mark.bottom
        anchors.topMargin: 14
        anchors.horizontalCenter: parent.horizontalCenter
        text: "CORVANE LOCKED"
        font: Theme.pixel(9, 2.2)
        color: Theme.muted
    }

    PillButton {
        id: unlock

        anchors.top: title.bottom
        anchors.topMargin: 14
        anchors.horizontalCenter: parent.horizontalCenter
        label: "UNLOCK"
        icon: "touchid"
        filled: true
        onTriggered: root.island.requestIslandUnlock()
    }
}
