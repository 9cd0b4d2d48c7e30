import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// Shown in place of every pane until the user has proved presence once.
CardFrame {
    id: root

    required property IslandController island

    topMargin: 40
    spacing: 14
    bottomMargin: 46

    BreathingMark {
        anchors.horizontalCenter: parent.horizontalCenter
        size: 26
        color: Theme.green
        period: 1.8
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "CORVANE LOCKED"
        font: Theme.pixel(9, 2.2)
        color: Theme.muted
    }

    Label {
        id: missing

        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(missing.implicitWidth, parent.width)
        height: missing.visible ? missing.implicitHeight : 0
        visible: root.island.presenceText !== ""
        text: root.island.presenceText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        font: Theme.term(8)
        color: Theme.red
        Accessible.role: Accessible.Notification
        Accessible.ignored: false
    }

    PillButton {
        anchors.horizontalCenter: parent.horizontalCenter
        label: "UNLOCK"
        icon: Pictogram.TouchId
        filled: true
        onTriggered: root.island.requestIslandUnlock()
    }
}
