import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Panes
import QtQuick

// The wallet's address, as a QR code and as text.
CardFrame {
    id: root

    required property ReceivePaneModel card
    required property OwnAddress own

    firstControl: root.card.hasAddress ? copy : null
    topMargin: 4
    spacing: 12
    bottomMargin: 16

    PaneHeader {
        width: parent.width
        title: "RECEIVE"
        networkName: root.card.networkName
        mainnet: root.card.isMainnet
        onClosed: root.card.close()
    }

    OwnAddressLine {
        width: parent.width
        own: root.own
    }

    Item {
        width: parent.width
        height: root.card.hasAddress ? 0 : 24 + hint.implicitHeight + 24
        visible: !root.card.hasAddress

        Label {
            id: hint

            y: 24
            anchors.horizontalCenter: parent.horizontalCenter
            text: "set your wallet address in settings first"
            font: Theme.term(10)
            color: Theme.muted
        }
    }

    QRPop {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 162
        height: code.valid ? 162 : 0
        visible: code.valid

        RoundedBox {
            anchors.fill: parent
            anchors.margins: -1
            radius: 14
            continuous: true
            color: Theme.paper
        }

        QRCode {
            id: code

            x: 9
            y: 9
            width: 144
            height: 144
            text: root.card.address
            Accessible.role: Accessible.Graphic
            Accessible.name: root.own.warning === "" ? "QR code of your address" : "QR code of another address"
        }
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, 380)
        height: root.card.hasAddress ? implicitHeight : 0
        visible: root.card.hasAddress
        text: root.card.address
        elide: Text.ElideMiddle
        font: Theme.term(9)
        color: Theme.muted
    }

    GreenButton {
        id: copy

        anchors.horizontalCenter: parent.horizontalCenter
        height: root.card.hasAddress ? implicitHeight : 0
        visible: root.card.hasAddress
        title: root.card.copyLabel
        horizontalPadding: 16
        verticalPadding: 7
        onTriggered: root.card.copyAddress()
    }
}
