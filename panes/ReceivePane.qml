import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// The wallet's address, as a QR code and in letters.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 4 + header.height + 12 + (card.hasAddress ? (code.valid ? pop.height + 12 : 0) + address.implicitHeight + 12 + copy.implicitHeight : hint.implicitHeight + 48) + 16

    ReceivePaneModel {
        id: card

        wallet: root.model
        island: root.island
    }

    PaneHeader {
        id: header

        x: 28
        y: 4
        width: root.width - 56
        height: implicitHeight
        title: "RECEIVE"
        networkName: card.networkName
        mainnet: card.isMainnet
        onClosed: card.close()
    }

    Label {
        id: hint

        anchors.top: header.bottom
        anchors.topMargin: 12 + 24
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !card.hasAddress
        text: "set your wallet address in settings first"
        font: Theme.term(10)
        color: Theme.muted
    }

    QRPop {
        id: pop

        anchors.top: header.bottom
        anchors.topMargin: 12
        anchors.horizontalCenter: parent.horizontalCenter
        width: 162
        height: 162
        visible: code.valid

        Rectangle {
            anchors.fill: parent
            radius: 14
            color: Theme.paper
            antialiasing: true
        }

        QRCode {
            id: code

            x: 9
            y: 9
            width: 144
            height: 144
            text: card.address
            Accessible.role: Accessible.Graphic
            Accessible.name: "QR code of your address"
        }
    }

    Label {
        id: address

        anchors.top: code.valid ? pop.bottom : header.bottom
        anchors.topMargin: 12
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, 380)
        visible: card.hasAddress
        text: card.address
        elide: Text.ElideMiddle
        font: Theme.term(9)
        color: Theme.muted
    }

    GreenButton {
        id: copy

        anchors.top: address.bottom
        anchors.topMargin: 12
        anchors.horizontalCenter: parent.horizontalCenter
        visible: card.hasAddress
        title: card.copyLabel
        horizontalPadding: 16
        verticalPadding: 7
        onTriggered: card.copyAddress()
    }
}
