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

    // The offer disappears with its acceptance, and must not take the keyboard focus with it.
    function accept(offer) {
        root.card.acceptOffer(offer);
        amount.takeFocus();
    }

    // A keyboard user goes on with the next transfer: the button that was pressed is disabled now.
    readonly property bool sent: root.card.sent
    onSentChanged: {
        const focused = root.Window.activeFocusItem;
        if (root.sent && (focused === null || focused === root.Window.contentItem || focused.parent === send))
            recipient.takeFocus();
    }

    spacing: 10

    NoteLine {
        width: parent.width
        text: root.card.payerWarning
        severe: true
    }

    Stack {
        width: parent.width
        spacing: 4

        LabelledField {
            id: recipient

            width: parent.width
            label: "TO"
            placeholder: "recipient solana address"
            text: root.card.recipient
            invalid: root.card.recipientRefusal !== ""
            problem: root.card.recipientRefusal
            onEdited: text => root.card.recipient = text
        }

        ErrorLine {
            width: parent.width
            text: root.card.recipientRefusal
        }

        NoteLine {
            width: parent.width
            text: root.card.recipientNote
            severe: root.card.recipientNoteIsSevere
        }
    }

    Stack {
        width: parent.width
        spacing: 4

        Item {
            width: parent.width
            height: amount.implicitHeight

            LabelledField {
                id: amount

                width: 160
                label: "AMOUNT (SOL)"
                placeholder: "0.00"
                text: root.card.amount
                invalid: root.card.amountRefusal !== ""
                problem: root.card.amountRefusal
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
                    wrapMode: Text.WordWrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    font: Theme.term(9)
                    color: Theme.muted
                }
            }
        }

        ErrorLine {
            width: parent.width
            text: root.card.amountRefusal
        }

        NoteLine {
            width: parent.width
            text: root.card.outlook
            severe: root.card.outlookIsRefusal
        }

        Item {
            width: parent.width
            height: root.card.offers.length > 0 ? firstOffer.implicitHeight : 0

            LinkText {
                id: firstOffer

                visible: root.card.offers.length > 0
                title: visible ? root.card.offers[0] : ""
                color: Theme.green
                onTriggered: root.accept(0)
            }

            LinkText {
                anchors.left: firstOffer.right
                anchors.leftMargin: 12
                visible: root.card.offers.length > 1
                title: visible ? root.card.offers[1] : ""
                color: Theme.green
                onTriggered: root.accept(1)
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

        Item {
            anchors.verticalCenter: button.verticalCenter
            height: hint.implicitHeight + (whole.visible ? whole.implicitHeight : 0)
            visible: !root.card.sending

            Label {
                id: hint

                text: "one click — your fingerprint already unlocked the key"
                font: Theme.term(8)
                color: Theme.muted
            }

            // The whole recipient at the moment of sending, in the room beside the button.
            Label {
                id: whole

                anchors.top: hint.bottom
                visible: send.enabled && send.aimedAt
                text: "to " + root.card.groupedRecipient
                font: Theme.term(8)
                color: Theme.ink
            }
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
                    description: root.card.ready ? "to " + root.card.groupedRecipient : ""
                    onTriggered: root.card.send(recipient.shown, amount.shown)
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
            id: sentSubject

            anchors.left: sentText.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.sent
            width: Math.min(implicitWidth, parent.width / 2)
            text: root.card.sentSubject
            elide: Text.ElideRight
            font: Theme.term(8)
            color: Theme.muted
        }

        Label {
            id: signature

            anchors.left: sentSubject.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.sent
            width: Math.min(implicitWidth, parent.width / 4)
            text: root.card.shortSignature
            elide: Text.ElideMiddle
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
        text: root.card.linkError
    }

    ErrorLine {
        width: parent.width
        text: root.card.errorMsg
    }

    Item {
        width: parent.width
        height: root.card.fate === "" ? 0 : fate.implicitHeight

        Label {
            id: fate

            visible: root.card.fate !== ""
            text: root.card.fate
            font: Theme.term(8)
            color: root.card.fateIsLoss ? Theme.red : Theme.muted
            // The announcements below say it.
            Accessible.ignored: true
        }

        // One for the question and one for its answer, because only what appears is spoken.
        Announcement {
            text: root.card.fateIsOpen ? root.card.fate : ""
        }

        Announcement {
            text: root.card.fateIsOpen ? "" : root.card.fate
        }

        Label {
            anchors.left: fate.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            visible: fate.visible && !root.card.fateIsOfSent
            text: root.card.fateSubject
            elide: Text.ElideRight
            font: Theme.term(8)
            color: Theme.muted
        }
    }
}
