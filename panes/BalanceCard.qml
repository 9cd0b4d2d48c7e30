import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// The default pane: what the wallet is worth, how the price moves, and the ways to the other panes.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 6 + header.height + 11 + figures.height + 11 + sparkline.height + 11 + actions.height + 14

    BalanceCardModel {
        id: card

        wallet: root.model
        island: root.island
    }

    Item {
        id: header

        x: 28
        y: 6
        width: root.width - 56
        height: Math.max(title.implicitHeight, networkTag.implicitHeight)

        Label {
            id: title

            anchors.verticalCenter: parent.verticalCenter
            text: "TOTAL BALANCE"
            font: Theme.pixel(8, 2.4)
            color: Theme.muted
        }

        NetworkTag {
            id: networkTag

            anchors.left: title.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: card.networkName
            mainnet: card.isMainnet
        }

        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, parent.width - networkTag.x - networkTag.width - 8)
            elide: Text.ElideRight
            text: card.changeText
            font: Theme.term(10, Theme.Bold)
            color: card.changeIsFall ? Theme.red : Theme.green
        }
    }

    Item {
        id: figures

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 11
        width: root.width - 56
        height: 4 + (card.hasAddress ? headline.implicitHeight + 6 + holdings.implicitHeight : watchTitle.implicitHeight + 6 + watchText.implicitHeight)

        RollingText {
            id: headline

            y: 2
            width: Math.min(implicitWidth, parent.width)
            height: implicitHeight
            visible: card.hasAddress
            text: card.headline
            font: Theme.pixel(24)
            color: Theme.ink
            minimumScale: 0.6

            PressArea {
                anchors.fill: parent
                label: card.headline
                onTriggered: card.toggleHeadline()
            }
        }

        Label {
            id: holdings

            anchors.top: headline.bottom
            anchors.topMargin: 6
            width: Math.min(implicitWidth, parent.width - solPrice.width - 8)
            elide: Text.ElideRight
            visible: card.hasAddress
            text: card.holdings
            font: Theme.term(10)
            color: Theme.muted
        }

        Label {
            id: solPrice

            anchors.right: parent.right
            anchors.top: holdings.top
            width: Math.min(implicitWidth, parent.width / 2)
            elide: Text.ElideRight
            visible: card.hasAddress
            text: card.solPrice
            font: Theme.term(10)
            color: Theme.muted
        }

        Label {
            id: watchTitle

            y: 2
            visible: !card.hasAddress
            text: "WATCH YOUR QUIBS"
            font: Theme.term(14, Theme.Heavy)
            color: Theme.ink
        }

        Label {
            id: watchText

            anchors.top: watchTitle.bottom
            anchors.topMargin: 6
            width: parent.width
            visible: !card.hasAddress
            text: "paste your quib wallet address - balances live in the notch. no keys, watch-only."
            wrapMode: Text.WordWrap
            font: Theme.term(10)
            color: Theme.muted
        }
    }

    SparklineView {
        id: sparkline

        x: 28
        anchors.top: figures.bottom
        anchors.topMargin: 11
        width: root.width - 56
        height: 38
        wave: card.wave
    }

    Item {
        id: actions

        x: 28
        anchors.top: sparkline.bottom
        anchors.topMargin: 11
        width: root.width - 56
        height: Math.max(chip.visible ? chip.implicitHeight : setAddress.implicitHeight, receive.visible ? receive.implicitHeight : 0, send.visible ? send.implicitHeight : 0)

        AddressChip {
            id: chip

            anchors.verticalCenter: parent.verticalCenter
            visible: card.hasAddress
            text: card.chipText
            copied: card.copied
            onTriggered: card.copyAddress()
        }

        GreenButton {
            id: setAddress

            anchors.verticalCenter: parent.verticalCenter
            visible: !card.hasAddress
            title: "SET ADDRESS"
            horizontalPadding: 14
            verticalPadding: 7
            onTriggered: card.openSettings()
        }

        PillButton {
            id: receive

            anchors.right: send.visible ? send.left : parent.right
            anchors.rightMargin: send.visible ? 8 : 0
            anchors.verticalCenter: parent.verticalCenter
            visible: card.hasAddress
            label: "RECEIVE"
            onTriggered: card.receive()
        }

        PillButton {
            id: send

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: card.canSend
            label: "SEND"
            icon: "paperplane.fill"
            filled: true
            onTriggered: card.send()
        }
    }

    Announcement {
        text: card.announcement
    }
}
