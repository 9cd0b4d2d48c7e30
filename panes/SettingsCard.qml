import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// What the wallet watches, whom it asks, and the last things to do with its key.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 6 + header.height + 9 + addressBlock.height + 9 + rpcBlock.height + 9 + networkRow.height + 9 + walletRow.height + 9 + 2 + done.implicitHeight + 16

    SettingsCardModel {
        id: card

        wallet: root.model
        island: root.island
    }

    Item {
        id: header

        x: 28
        y: 6
        width: root.width - 56
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

    Item {
        id: addressBlock

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 9
        width: root.width - 56
        height: address.implicitHeight + (addressError.text === "" ? 0 : 4 + addressError.implicitHeight)

        LabelledField {
            id: address

            width: parent.width
            label: "WALLET ADDRESS (public key, watch-only)"
            placeholder: "paste your quib address"
            text: card.address
            onEdited: text => card.address = text
        }

        ErrorLine {
            id: addressError

            y: address.implicitHeight + 4
            width: parent.width
            text: card.addressError
        }
    }

    Item {
        id: rpcBlock

        x: 28
        anchors.top: addressBlock.bottom
        anchors.topMargin: 9
        width: root.width - 56
        height: rpc.implicitHeight + 4 + rpcSource.implicitHeight

        LabelledField {
            id: rpc

            width: parent.width
            label: "CUSTOM RPC URL (optional, wins over public RPC)"
            placeholder: card.rpcPlaceholder
            text: card.customRPC
            onEdited: text => card.customRPC = text
        }

        Label {
            id: rpcSource

            y: rpc.implicitHeight + 4
            text: card.rpcSource
            font: Theme.term(8)
            color: card.rpcIsPublic ? Theme.muted : Theme.green
        }
    }

    Item {
        id: networkRow

        x: 28
        anchors.top: rpcBlock.bottom
        anchors.topMargin: 9
        width: root.width - 56
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
        id: walletRow

        x: 28
        anchors.top: networkRow.bottom
        anchors.topMargin: 9
        width: root.width - 56
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

    OutlineButton {
        x: 28
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

        anchors.right: parent.right
        anchors.rightMargin: 28
        anchors.top: walletRow.bottom
        anchors.topMargin: 11
        title: "DONE"
        horizontalPadding: 18
        verticalPadding: 6
        onTriggered: card.done()
    }
}
