import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Look.Secrets
import Corvane.Panes
import QtQuick

// Shows the key of a new wallet once, until the user has saved it.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    implicitHeight: 8 + header.height + 10 + warning.height + 10 + key.height + 10 + done.implicitHeight + 16

    BackupCardModel {
        id: card

        wallet: root.model
        island: root.island
    }

    Item {
        id: header

        x: 28
        y: 8
        width: root.width - 56
        height: Math.max(symbol.implicitHeight, title.implicitHeight)

        Pictogram {
            id: symbol

            anchors.verticalCenter: parent.verticalCenter
            name: "key.fill"
            fontSize: 11
            color: Theme.green
        }

        Label {
            id: title

            anchors.left: symbol.right
            anchors.leftMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            text: "BACK UP YOUR KEY"
            font: Theme.term(12, Theme.Heavy)
            color: Theme.ink
        }
    }

    Label {
        id: warning

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 10
        width: root.width - 56
        height: implicitHeight
        text: "this is the ONLY copy. save it somewhere safe — a password manager, paper, anywhere offline. anyone holding it owns the wallet; lose it and nobody can recover it."
        wrapMode: Text.WordWrap
        font: Theme.term(9)
        color: Theme.muted
    }

    Panel {
        id: key

        x: 28
        anchors.top: warning.bottom
        anchors.topMargin: 10
        width: root.width - 56
        height: secret.implicitHeight + 20

        SecretLabel {
            id: secret

            x: 10
            y: 10
            width: parent.width - 20
            height: implicitHeight
            secret: card.backup
            font: Theme.term(9)
            color: Theme.ink
            selectionColor: Qt.alpha(Theme.green, 0.4)
            Accessible.role: Accessible.StaticText
            Accessible.name: "Your secret key, which is not read out. The next button copies it."
            onCopyRequested: (first, count) => card.copyPart(first, count)
        }
    }

    PillButton {
        x: 28
        anchors.verticalCenter: done.verticalCenter
        label: card.copyLabel
        icon: "doc.on.doc"
        onTriggered: card.copy()
    }

    PillButton {
        id: done

        anchors.right: parent.right
        anchors.rightMargin: 28
        anchors.top: key.bottom
        anchors.topMargin: 10
        label: "I'VE SAVED IT"
        icon: "checkmark"
        filled: true
        onTriggered: card.finish()
    }
}
