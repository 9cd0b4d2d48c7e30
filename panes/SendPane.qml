import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// Sends coins: to whom, how many, and what became of it.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 6 + header.height + 10 + (card.hasKey ? form.implicitHeight : notice.implicitHeight) + 16

    SendPaneModel {
        id: card

        wallet: root.model
        island: root.island
    }

    PaneHeader {
        id: header

        x: 28
        y: 6
        width: root.width - 56
        height: implicitHeight
        title: "SEND"
        networkName: card.networkName
        mainnet: card.isMainnet
        onClosed: card.close()
    }

    Item {
        id: notice

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 10
        width: root.width - 56
        implicitHeight: 2 + noticeText.implicitHeight + 8 + setUp.implicitHeight
        visible: !card.hasKey

        Label {
            id: noticeText

            y: 2
            text: "no wallet yet — create or import one first"
            font: Theme.term(9)
            color: Theme.muted
        }

        PillButton {
            id: setUp

            anchors.top: noticeText.bottom
            anchors.topMargin: 8
            label: "SET UP WALLET"
            icon: "sparkles"
            filled: true
            onTriggered: card.close()
        }
    }

    SendForm {
        id: form

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 10
        width: root.width - 56
        visible: card.hasKey
        card: card
    }
}
