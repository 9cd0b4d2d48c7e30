import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// The shortened address of the wallet; a click copies the address.
PlainButton {
    id: root

    required property string text
    required property bool copied

    // The widest text so far: the chip keeps its width while a shorter one stands for the address.
    property real widest: 0

    title: root.text
    implicitWidth: root.widest + 22
    implicitHeight: label.implicitHeight + 12

    Panel {
        anchors.fill: parent
        radius: root.radius
        outline: root.hovered ? Qt.alpha(Theme.green, 0.9) : Theme.line
    }

    Label {
        id: label

        anchors.centerIn: parent
        text: root.text
        font: Theme.term(9, Theme.Bold)
        color: root.copied ? Theme.green : Theme.ink
        Accessible.ignored: true
        onImplicitWidthChanged: root.widest = Math.max(root.widest, label.implicitWidth)
    }
}
