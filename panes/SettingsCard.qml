import Corvane.Look
import Corvane.Look.Controls
import Corvane.Panes
import QtQuick

// The watched address, the endpoints, and the backup and removal of the key.
CardFrame {
    id: root

    required property SettingsCardModel card
    required property OwnAddress own
    required property PresenceNotice presence

    // Not a field with an address in it, which a stray key would change.
    firstControl: root.card.address === "" ? null : done
    topMargin: 6
    spacing: 9
    bottomMargin: 16

    function goBack() {
        root.card.done();
        return true;
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
            text: root.card.address
            problem: root.card.addressError
            onEdited: text => root.card.address = text
        }

        ErrorLine {
            width: parent.width
            text: root.card.addressError
        }

        OwnAddressLine {
            width: parent.width
            own: root.own
            warns: false
        }
    }

    Stack {
        width: parent.width
        spacing: 4

        LabelledField {
            width: parent.width
            label: "CUSTOM RPC URL (optional, wins over public RPC)"
            placeholder: root.card.rpcPlaceholder
            text: root.card.customRPC
            problem: root.card.customRPCError
            onEdited: text => root.card.customRPC = text
        }

        ErrorLine {
            width: parent.width
            text: root.card.customRPCError
        }

        Item {
            width: parent.width
            height: source.implicitHeight

            Label {
                id: source

                text: root.card.rpcSource
                font: Theme.term(8)
                color: root.card.rpcIsPublic ? Theme.muted : Theme.green
            }

            ErrorLine {
                anchors.left: source.right
                anchors.leftMargin: 8
                anchors.right: parent.right
                text: root.card.rpcSilence
            }
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
            titles: root.card.networks
            selected: root.card.network
            onChosen: index => root.card.network = index
        }
    }

    Stack {
        width: parent.width
        spacing: 4

        Item {
            width: parent.width
            height: Math.max(walletText.implicitHeight, backup.implicitHeight)

            Label {
                id: walletText

                anchors.verticalCenter: parent.verticalCenter
                text: root.card.walletText
                font: Theme.term(8)
                color: root.card.hasKey ? Theme.green : Theme.muted
            }

            LinkText {
                id: backup

                anchors.right: remove.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                visible: root.card.hasKey
                title: "BACKUP"
                color: Theme.green
                onTriggered: root.card.backup()
            }

            LinkText {
                id: remove

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: root.card.hasKey
                title: root.card.removeLabel
                color: Theme.red
                onTriggered: root.card.remove()
            }
        }

        ErrorLine {
            width: parent.width
            text: root.card.backupText
        }

        ErrorLine {
            width: parent.width
            text: root.presence.keyText
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
            onTriggered: root.card.quit()
        }

        GreenButton {
            id: done

            y: 2
            anchors.right: parent.right
            title: "DONE"
            horizontalPadding: 18
            verticalPadding: 6
            onTriggered: root.card.done()
        }
    }
}
