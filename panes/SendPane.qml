import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// Sends coins: to whom, how many, and what became of it.
CardFrame {
    id: root

    required property WalletModel model
    required property IslandController island

    topMargin: 6
    spacing: 10
    bottomMargin: 16

    SendPaneModel {
        id: card

        wallet: root.model
        island: root.island
    }

    PaneHeader {
        width: parent.width
        title: "SEND"
        networkName: card.networkName
        mainnet: card.isMainnet
        onClosed: card.close()
    }

    Item {
        width: parent.width
        height: card.hasKey ? 0 : 2 + notice.implicitHeight
        visible: !card.hasKey

        Stack {
            id: notice

            y: 2
            spacing: 8

            Label {
                text: "no wallet yet — create or import one first"
                font: Theme.term(9)
                color: Theme.muted
            }

            PillButton {
                label: "SET UP WALLET"
                icon: "sparkles"
                filled: true
                onTriggered: card.close()
            }
        }
    }

    SendForm {
        width: parent.width
        height: card.hasKey ? implicitHeight : 0
        visible: card.hasKey
        card: card
    }
}
