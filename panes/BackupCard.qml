import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Look.Secrets
import Corvane.Panes
import QtQuick

// Shows the key of a new wallet once, until the user has saved it.
CardFrame {
    id: root

    required property BackupCardModel card

    firstControl: copy
    topMargin: 8
    spacing: 10
    bottomMargin: 16

    Item {
        width: parent.width
        height: Math.max(symbol.implicitHeight, title.implicitHeight)

        Pictogram {
            id: symbol

            anchors.verticalCenter: parent.verticalCenter
            symbol: Pictogram.KeyFill
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
        width: parent.width
        text: "this is the ONLY copy. save it somewhere safe — a password manager, paper, anywhere offline. anyone holding it owns the wallet; lose it and nobody can recover it."
        wrapMode: Text.WordWrap
        font: Theme.term(9)
        color: Theme.muted
    }

    Panel {
        width: parent.width
        height: secret.implicitHeight + 20

        SecretLabel {
            id: secret

            x: 10
            y: 10
            width: parent.width - 20
            secret: root.card.backup
            font: Theme.term(9)
            color: Theme.ink
            selectionColor: Qt.alpha(Theme.green, 0.4)
            Accessible.role: Accessible.StaticText
            Accessible.name: "Your secret key, which is not read out. The next button copies it."
            onCopyRequested: (first, count) => root.card.copyPart(first, count)
        }
    }

    Item {
        width: parent.width
        height: done.implicitHeight

        PillButton {
            id: copy

            anchors.verticalCenter: done.verticalCenter
            label: root.card.copyLabel
            icon: Pictogram.DocOnDoc
            onTriggered: root.card.copy()
        }

        Label {
            anchors.left: copy.right
            anchors.leftMargin: 8
            anchors.verticalCenter: done.verticalCenter
            text: root.card.copyNote
            font: Theme.term(9)
            color: Theme.muted
            Accessible.ignored: true
        }

        Announcement {
            text: root.card.copyNote
        }

        PillButton {
            id: done

            anchors.right: parent.right
            label: "I'VE SAVED IT"
            icon: Pictogram.Checkmark
            filled: true
            onTriggered: root.card.finish()
        }
    }
}
