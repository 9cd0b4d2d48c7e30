import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// What the wallet watches, whom it asks, and the last things to do with its key.
CardFrame {
    id: root

    required property WalletModel model
    required property IslandController island

    topMargin: 6
    spacing: 9
    bottomMargin: 16

    SettingsCardModel {
        id: card

        wallet: root.model
        island: root.island
    }

    Item {
        width: parent.width
        height: Math.max(title.implicitHeight, unit.implicitHeight)

        Label {
            id: title

            anchors.verticalCenter: parent.verticalCenter
            text: "CORVANE SETTINGS"
            font: Theme.pixel(8, 2.2)
            color: Theme.muted
        }

        Label {
            id: unit

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "1 QUIB = .001 SOL"
            font: Theme.term(8)
            color: Theme.muted
        }
    }

    Stack {
        width: parent.width
        spacing: 4

        LabelledField {
            width: parent.width
            label: "WALLET ADDRESS (public key, watch-only)"
            placeholder: "paste your quib address"
            text: card.address
            onEdited: text => card.address = text
        }

        ErrorLine {
            width: parent.width
            text: card.addressError
        }
    }

    Stack {
        width: parent.width
        spacing: 4

        LabelledField {
            width: parent.width
            label: "CUSTOM RPC URL (optional, wins over public RPC)"
            placeholder: card.rpcPlaceholder
            text: card.customRPC
            onEdited: text => card.customRPC = text
        }

        Label {
            text: card.rpcSource
            font: Theme.term(8)
            color: card.rpcIsPublic ? Theme.muted : Theme.green
        }
    }

    Item {
        width: parent.width
        height: Math.max(networkLabel.implicitHeight, picker.implicitHeight)

        Label {
            id: networkLabel

            anchors.verticalCenter: parent.verticalCenter
            text: "NETWORK"
            font: Theme.term(8, Theme.Bold, 1.4)
            color: Theme.muted
            Accessible.ignored: true
        }

        SegmentedPicker {
            id: picker

            anchors.left: networkLabel.right
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            width: 200
            label: networkLabel.text
            titles: card.networks
            selected: card.network
            onChosen: index => card.network = index
        }
    }

    Item {
        width: parent.width
        height: Math.max(walletText.implicitHeight, backup.implicitHeight)

        Label {
            id: walletText

            anchors.verticalCenter: parent.verticalCenter
            text: card.walletText
            font: Theme.term(8)
            color: card.hasKey ? Theme.green : Theme.muted
        }

        LinkText {
            id: backup

            anchors.right: remove.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            visible: card.hasKey
            title: "BACKUP"
            color: Theme.green
            onTriggered: card.backup()
        }

        LinkText {
            id: remove

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: card.hasKey
            title: card.removeLabel
            color: Theme.red
            onTriggered: card.remove()
        }
    }

    Item {
        width: parent.width
        height: 2 + done.implicitHeight

        OutlineButton {
            anchors.verticalCenter: done.verticalCenter
            title: "QUIT"
            font: Theme.pixel(9, 1.5)
            color: Theme.red
            horizontalPadding: 12
            verticalPadding: 6
            onTriggered: card.quit()
        }

        GreenButton {
            id: done

            y: 2
            anchors.right: parent.right
            title: "DONE"
            horizontalPadding: 18
            verticalPadding: 6
            onTriggered: card.done()
        }
    }
}
