import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Panes
import QtQuick

// The first row of a pane: its title, the network, and the button back to the balance.
Item {
    id: root

    required property string title
    required property string networkName
    required property bool mainnet
    signal closed

    implicitHeight: Math.max(tag.implicitHeight, close.implicitHeight)

    QuibMark {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        width: 11
        height: 11
        color: Theme.ink
    }

    Label {
        id: title

        anchors.left: mark.right
        anchors.leftMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        font: Theme.pixel(8, 2.2)
        color: Theme.muted
    }

    NetworkTag {
        id: tag

        anchors.left: title.right
        anchors.leftMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        name: root.networkName
        mainnet: root.mainnet
    }

    IconButton {
        id: close

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: Pictogram.ChevronUp
        label: "Back to the balance"
        onTriggered: root.closed()
    }
}
