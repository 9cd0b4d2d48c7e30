import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Panes
import QtQuick

// The default pane: the balance, the price with its chart, and buttons for the other panes.
CardFrame {
    id: root

    required property BalanceCardModel card
    required property OwnAddress own

    firstControl: root.card.canSend ? send : root.card.hasAddress ? receive : setAddress
    topMargin: 6
    spacing: 11

    // No text field is on this card, and one elsewhere in the window would take the key itself.
    Shortcut {
        sequence: "H"
        enabled: root.enabled && root.visible
        autoRepeat: false
        onActivated: root.card.toggleAmounts()
    }
    bottomMargin: 14

    Item {
        width: parent.width
        height: Math.max(title.implicitHeight, networkTag.implicitHeight)

        Label {
            id: title

            anchors.verticalCenter: parent.verticalCenter
            text: "TOTAL BALANCE"
            font: Theme.pixel(8, 2.4)
            color: Theme.muted
        }

        NetworkTag {
            id: networkTag

            anchors.left: title.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: root.card.networkName
            mainnet: root.card.isMainnet
        }

        Label {
            id: asOf

            anchors.left: networkTag.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: root.card.asOf
            font: Theme.term(8)
            color: Theme.muted
        }

        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, parent.width - asOf.x - asOf.implicitWidth - 8)
            elide: Text.ElideRight
            text: root.card.changeText
            font: Theme.term(10, Theme.Bold)
            color: root.card.changeIsFall ? Theme.red : Theme.green
        }
    }

    Item {
        width: parent.width
        height: 4 + (root.card.hasAddress ? worth.implicitHeight : invitation.implicitHeight)

        Stack {
            id: worth

            y: 2
            width: parent.width
            spacing: 6
            visible: root.card.hasAddress

            RollingText {
                width: Math.min(implicitWidth, parent.width)
                text: root.card.headline
                font: Theme.pixel(24)
                color: Theme.ink
                minimumScale: 0.6

                PressArea {
                    anchors.fill: parent
                    label: root.card.headline
                    onTriggered: root.card.toggleHeadline()
                }
            }

            Item {
                width: parent.width
                height: holdings.implicitHeight

                Label {
                    id: holdings

                    width: Math.min(implicitWidth, parent.width - solPrice.width - 8)
                    elide: Text.ElideRight
                    text: root.card.holdings
                    font: Theme.term(10)
                    color: Theme.muted
                }

                Label {
                    id: solPrice

                    anchors.right: parent.right
                    width: Math.min(implicitWidth, parent.width / 2)
                    elide: Text.ElideRight
                    text: root.card.solPrice
                    font: Theme.term(10)
                    color: Theme.muted
                }
            }
        }

        Stack {
            id: invitation

            y: 2
            width: parent.width
            spacing: 6
            visible: !root.card.hasAddress

            Label {
                text: "WATCH YOUR QUIBS"
                font: Theme.term(14, Theme.Heavy)
                color: Theme.ink
            }

            Label {
                width: parent.width
                text: "paste your quib wallet address - balances live in the notch. no keys, watch-only."
                wrapMode: Text.WordWrap
                font: Theme.term(10)
                color: Theme.muted
            }
        }
    }

    OwnAddressLine {
        width: parent.width
        own: root.own
    }

    SparklineView {
        width: parent.width
        height: 38
        wave: root.card.wave
    }

    Item {
        width: parent.width
        height: Math.max(chip.visible ? chip.implicitHeight : setAddress.implicitHeight, receive.visible ? receive.implicitHeight : 0, send.visible ? send.implicitHeight : 0)

        AddressChip {
            id: chip

            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.hasAddress
            text: root.card.chipText
            copied: root.card.copied
            onTriggered: root.card.copyAddress()
        }

        GreenButton {
            id: setAddress

            anchors.verticalCenter: parent.verticalCenter
            visible: !root.card.hasAddress
            title: "SET ADDRESS"
            horizontalPadding: 14
            verticalPadding: 7
            onTriggered: root.card.openSettings()
        }

        PillButton {
            id: receive

            anchors.right: send.visible ? send.left : parent.right
            anchors.rightMargin: send.visible ? 8 : 0
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.hasAddress
            label: "RECEIVE"
            onTriggered: root.card.receive()
        }

        PillButton {
            id: send

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.card.canSend
            label: "SEND"
            icon: Pictogram.PaperPlaneFill
            filled: true
            onTriggered: root.card.send()
        }

        Announcement {
            text: root.card.announcement
        }
    }
}
