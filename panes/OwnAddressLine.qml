import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// Says that the watched address is not this wallet's own, with the way back. Without a text it has no height.
Item {
    id: root

    required property OwnAddress own
    // False on a card whose purpose is to set any address.
    property bool warns: true
    readonly property bool needed: warning.text !== "" || offer.text !== ""

    implicitHeight: root.needed ? Math.max(warning.implicitHeight, offer.implicitHeight, back.implicitHeight) : 0
    visible: root.needed
    opacity: appearance.opacity

    Appearance {
        id: appearance

        shown: root.needed
    }

    ErrorLine {
        id: warning

        anchors.verticalCenter: parent.verticalCenter
        width: root.width - back.implicitWidth - 12
        text: root.warns ? root.own.warning : ""
    }

    Label {
        id: offer

        anchors.verticalCenter: parent.verticalCenter
        width: root.width - back.implicitWidth - 12
        height: root.own.offer === "" ? 0 : implicitHeight
        text: root.own.offer
        wrapMode: Text.Wrap
        font: Theme.term(8)
        color: Theme.ink
    }

    LinkText {
        id: back

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        title: root.own.actionLabel
        color: Theme.green
        onTriggered: root.own.watch()
    }
}
