import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// The shortened address of the wallet; a click copies the address.
Item {
    id: root

    required property string text
    required property bool copied
    signal triggered

    implicitWidth: label.implicitWidth + 22
    implicitHeight: label.implicitHeight + 12

    Panel {
        anchors.fill: parent
        radius: 4
    }

    Label {
        id: label

        anchors.centerIn: parent
        text: root.text
        font: Theme.term(9, Theme.Bold)
        color: root.copied ? Theme.green : Theme.ink
        Accessible.ignored: true
    }

    PressArea {
        anchors.fill: parent
        label: root.text
        onTriggered: root.triggered()
    }
}
