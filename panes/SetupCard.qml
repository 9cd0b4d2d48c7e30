pragma ComponentBehavior: Bound

import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Secrets
import Corvane.Panes
import QtQuick

// Two ways to a wallet of one's own: create a key, or import one.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 10 + faces.implicitHeight + (error.text === "" ? 0 : 10 + error.implicitHeight) + 18

    SetupCardModel {
        id: card

        wallet: root.model
        island: root.island
        onImportingChanged: faces.show(card.importing ? importFace : choiceFace)
    }

    CardSwitcher {
        id: faces

        x: 28
        y: 10
        width: root.width - 56
        transaction: root.island.transaction
        Component.onCompleted: faces.show(choiceFace)
    }

    ErrorLine {
        id: error

        x: 28
        anchors.top: faces.bottom
        anchors.topMargin: 10
        width: root.width - 56
        text: card.errorMsg
    }

    Component {
        id: choiceFace

        Item {
            implicitHeight: choiceTitle.implicitHeight + 10 + choiceText.height + 10 + 4 + create.implicitHeight

            Label {
                id: choiceTitle

                text: "YOUR WALLET, IN THE NOTCH"
                font: Theme.term(14, Theme.Heavy)
                color: Theme.ink
            }

            Label {
                id: choiceText

                anchors.top: choiceTitle.bottom
                anchors.topMargin: 10
                width: parent.width
                height: implicitHeight
                text: "a full solana wallet that lives right here. the key is forged on this mac and locked in the keychain — touch id opens it, nothing ever leaves."
                wrapMode: Text.WordWrap
                font: Theme.term(10)
                color: Theme.muted
            }

            PillButton {
                id: create

                anchors.top: choiceText.bottom
                anchors.topMargin: 14
                label: "CREATE WALLET"
                icon: "sparkles"
                filled: true
                onTriggered: card.createWallet()
            }

            PillButton {
                anchors.left: create.right
                anchors.leftMargin: 8
                anchors.verticalCenter: create.verticalCenter
                label: "IMPORT"
                onTriggered: card.showImport()
            }
        }
    }

    Component {
        id: importFace

        Item {
            implicitHeight: importTitle.implicitHeight + 10 + importHelp.height + 10 + field.implicitHeight + 10 + submit.implicitHeight

            Label {
                id: importTitle

                text: "IMPORT A WALLET"
                font: Theme.term(12, Theme.Heavy)
                color: Theme.ink
            }

            Label {
                id: importHelp

                anchors.top: importTitle.bottom
                anchors.topMargin: 10
                width: parent.width
                height: implicitHeight
                text: "paste a secret key — base58 (phantom / solflare export) or the JSON byte array from solana-keygen. straight into the keychain, never to disk."
                wrapMode: Text.WordWrap
                font: Theme.term(9)
                color: Theme.muted
            }

            SecureField {
                id: field

                anchors.top: importHelp.bottom
                anchors.topMargin: 10
                width: parent.width
                height: implicitHeight
                placeholder: "secret key"
                secret: card.importText
            }

            PillButton {
                anchors.verticalCenter: submit.verticalCenter
                label: "BACK"
                onTriggered: card.back()
            }

            PillButton {
                id: submit

                anchors.right: parent.right
                anchors.top: field.bottom
                anchors.topMargin: 10
                label: "IMPORT"
                icon: "key.fill"
                filled: true
                enabled: card.canImport
                opacity: card.canImport ? 1 : 0.4
                onTriggered: card.importKey()
            }
        }
    }
}
