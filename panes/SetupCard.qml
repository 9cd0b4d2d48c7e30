pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import Corvane.Look.Secrets
import Corvane.Panes
import QtQuick

// Sets up a wallet: creates a key or imports one.
CardFrame {
    id: root

    required property SetupCardModel card
    required property PresenceNotice presence

    firstField: root.card.importing ? faces.current : null
    firstControl: faces.current
    topMargin: 10
    spacing: 10
    bottomMargin: 18

    Connections {
        target: root.card

        function onImportingChanged() {
            faces.show(root.card.importing ? importFace : choiceFace);
            root.restarted();
        }
    }

    function goBack() {
        if (!root.card.importing)
            return false;
        root.card.back();
        return true;
    }

    CardSwitcher {
        id: faces

        width: parent.width
        transaction: root.card.transaction
        Component.onCompleted: faces.show(choiceFace)
    }

    ErrorLine {
        width: parent.width
        text: root.presence.newKeyText
    }

    ErrorLine {
        width: parent.width
        text: root.card.errorMsg
    }

    Component {
        id: choiceFace

        Stack {
            spacing: 10

            Label {
                text: "YOUR WALLET, IN THE NOTCH"
                font: Theme.term(14, Theme.Heavy)
                color: Theme.ink
            }

            Label {
                width: parent.width
                text: "a full solana wallet that lives right here. the key is forged on this mac and locked in the keychain — touch id opens it, nothing ever leaves."
                wrapMode: Text.WordWrap
                font: Theme.term(10)
                color: Theme.muted
            }

            Item {
                width: parent.width
                height: 4 + create.implicitHeight

                PillButton {
                    id: create

                    y: 4
                    label: "CREATE WALLET"
                    icon: Pictogram.Sparkles
                    filled: true
                    onTriggered: root.card.createWallet()
                }

                PillButton {
                    anchors.left: create.right
                    anchors.leftMargin: 8
                    anchors.verticalCenter: create.verticalCenter
                    label: "IMPORT"
                    onTriggered: root.card.showImport()
                }
            }
        }
    }

    Component {
        id: importFace

        Stack {
            spacing: 10

            Label {
                text: "IMPORT A WALLET"
                font: Theme.term(12, Theme.Heavy)
                color: Theme.ink
            }

            Label {
                width: parent.width
                text: "paste a secret key — base58 (phantom / solflare export) or the JSON byte array from solana-keygen. straight into the keychain, never to disk."
                wrapMode: Text.WordWrap
                font: Theme.term(9)
                color: Theme.muted
            }

            SecureField {
                width: parent.width
                placeholder: "secret key"
                secret: root.card.importText
            }

            Item {
                width: parent.width
                height: submit.implicitHeight

                PillButton {
                    anchors.verticalCenter: submit.verticalCenter
                    label: "BACK"
                    onTriggered: root.card.back()
                }

                PillButton {
                    id: submit

                    anchors.right: parent.right
                    label: "IMPORT"
                    icon: Pictogram.KeyFill
                    filled: true
                    enabled: root.card.canImport
                    opacity: root.card.canImport ? 1 : 0.4
                    onTriggered: root.card.importKey()
                }
            }
        }
    }
}
