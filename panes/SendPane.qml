import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Panes
import QtQuick

// Sends coins: recipient, amount and result.
CardFrame {
    id: root

    required property SendPaneModel card
    required property PresenceNotice presence

    firstField: root.card.hasKey ? form : null
    topMargin: 6
    spacing: 10
    bottomMargin: 16

    PaneHeader {
        width: parent.width
        title: "SEND"
        networkName: root.card.networkName
        mainnet: root.card.isMainnet
        onClosed: root.card.close()
    }

    Item {
        width: parent.width
        height: root.card.hasKey ? 0 : 2 + notice.implicitHeight
        visible: !root.card.hasKey

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
                icon: Pictogram.Sparkles
                filled: true
                onTriggered: root.card.close()
            }
        }
    }

    ErrorLine {
        width: parent.width
        text: root.presence.keyText
    }

    SendForm {
        id: form

        width: parent.width
        height: root.card.hasKey ? implicitHeight : 0
        visible: root.card.hasKey
        card: root.card
    }
}
