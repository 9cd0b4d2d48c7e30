import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import Corvane.Panes
import QtQuick

// The fields of a transfer, its button, and the result of the last transfer.
Stack {
    id: root

    required property SendPaneModel card

    spacing: 10

    LabelledField {
        width: parent.width
        label: "TO"
        placeholder: "recipient solana address"
        text: root.card.recipient
        invalid: root.card.recipientIsWrong
        onEdited: text => root.card.recipient = text
    }

    Item {
        width: parent.width
        height: amount.implicitHeight

        LabelledField {
            id: amount

            width: 160
            label: "AMOUNT (SOL)"
            placeholder: "0.00"
            text: root.card.amount
            invalid: root.card.amountIsWrong
            onEdited: text => root.card.amount = text
        }

        Item {
            anchors.left: amount.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.bottom: amount.bottom
            height: amount.field.implicitHeight

            OutlineButton {
                id: max

                anchors.verticalCenter: parent.verticalCenter
                visible: root.card.hasMax
                title: "MAX"
                font: Theme.term(8, Theme.Bold)
                color: Theme.green
                horizontalPadding: 8
                verticalPadding: 5
                onTriggered: root.card.max()
            }

            Label {
                anchors.left: root.card.hasMax ? max.right : parent.left
                anchors.leftMargin: root.card.hasMax ? 8 : 0
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: root.card.equivalence
                elide: Text.ElideRight
                font: Theme.term(9)
                color: Theme.muted
            }
        }
    }

    Item {
        width: parent.width
        height: 2 + send.implicitHeight

        PixelWave {
            anchors.verticalCenter: button.verticalCenter
            visible: root.card.sending
            color: Theme.green
            Accessible.role: Accessible.Animation
            Accessible.name: root.card.sendLabel
        }

        Label {
            anchors.verticalCenter: button.verticalCenter
            visible: !root.card.sending
            text: "one click — your fingerprint already unlocked the key"
            font: Theme.term(8)
            color: Theme.muted
        }

        Item {
            id: button

            y: 2
            anchors.right: parent.right
            width: send.implicitWidth
            height: send.implicitHeight

            AnimatedValue {
                id: shrink

                target: root.card.sending ? 0.94 : 1
                Component.onCompleted: shrink.useSpring(0.3, 0.6)
            }

            Item {
                anchors.fill: parent
                scale: shrink.value

                PillButton {
                    id: send

                    label: root.card.sendLabel
                    icon: Pictogram.PaperPlaneFill
                    filled: true
                    enabled: root.card.ready
                    opacity: root.card.ready ? 1 : 0.4
                    onTriggered: root.card.send()
                }
            }

            SendBurst {
                anchors.centerIn: parent
                width: implicitWidth
                height: implicitHeight
                color: Theme.green
                trigger: root.card.burst
            }
        }
    }

    Item {
        width: parent.width
        height: root.card.sent ? sentText.implicitHeight : 0

        Label {
            id: sentText

            scale: Theme.reducedMotion ? 1 : appearance.value
            opacity: appearance.opacity
            visible: opacity > 0
            text: "SENT ✓"
            font: Theme.term(9, Theme.Heavy)
            color: Theme.green
            // While the line disappears, the spring's overshoot briefly shows it again, which must
            // not be announced.
            Accessible.role: root.card.sent ? Accessible.Notification : Accessible.StaticText

            AnimatedValue {
                id: appearance

                target: root.card.sent ? 1 : 0
                fades: true
                Component.onCompleted: appearance.useSpring(0.3, 0.6)
            }
        }

        Label {
            id: signature

            anchors.left: sentText.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.sent
            text: root.card.shortSignature
            font: Theme.term(8)
            color: Theme.muted
        }

        LinkText {
            anchors.left: signature.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.hasLink
            title: "VIEW ON SOLSCAN"
            color: Theme.green
            onTriggered: root.card.openLink()
        }
    }

    ErrorLine {
        width: parent.width
        text: root.card.errorMsg
    }
}
