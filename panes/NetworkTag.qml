import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// The name of the cluster that the figures come from.
Rectangle {
    id: root

    required property string name
    required property bool mainnet

    implicitWidth: 7 + 5 + 5 + label.implicitWidth + 7
    implicitHeight: label.implicitHeight + 6
    radius: 4
    color: Theme.card
    antialiasing: true

    Rectangle {
        x: 7
        anchors.verticalCenter: parent.verticalCenter
        width: 5
        height: 5
        color: root.mainnet ? Theme.green : Theme.red
    }

    Label {
        id: label

        x: 17
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        font: Theme.term(8, Theme.Bold)
        color: Theme.muted
    }
}
