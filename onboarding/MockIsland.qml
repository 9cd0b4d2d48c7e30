pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// A miniature of the island: the resting tab, the strip, or the strip with a card.
Item {
    id: root

    required property bool stretched
    required property bool unfurled
    required property Transaction transaction

    readonly property real stripHeight: 16
    readonly property real devicePixel: 1 / Screen.devicePixelRatio

    // Whole device pixels keep the outline crisp while it moves.
    function snapped(length) {
        return Math.round(length / root.devicePixel) * root.devicePixel;
    }

    width: 2 * root.snapped(widthValue.value / 2)
    height: root.snapped(Math.max(0, heightValue.value))

    AnimatedValue {
        id: widthValue

        transaction: root.transaction
        target: root.stretched ? 250 : 92
        tolerance: 0.2
    }

    AnimatedValue {
        id: heightValue

        transaction: root.transaction
        target: root.stripHeight + (root.unfurled ? reveal.implicitHeight : 0)
        tolerance: 0.2
    }

    AnimatedValue {
        id: radiusValue

        transaction: root.transaction
        target: root.stretched ? 12 : 5
        tolerance: 0.05
    }

    AnimatedValue {
        id: shadowValue

        fades: true
        transaction: root.transaction
        target: root.unfurled ? 0.6 : 0
    }

    // How much of the strip is its name, and not its mark.
    AnimatedValue {
        id: nameValue

        fades: true
        transaction: root.transaction
        target: root.stretched ? 1 : 0
    }

    SoftShadow {
        y: 7
        width: root.width
        height: root.height
        radius: 14
        color: "black"
        opacity: shadowValue.opacity
        visible: opacity > 0
    }

    NotchShape {
        x: -1
        y: -1
        width: root.width + 2
        height: root.height + 2
        bottomRadius: radiusValue.value
    }

    Item {
        anchors.fill: parent
        clip: true

        BreathingMark {
            x: 10
            y: (root.stripHeight - height) / 2
            size: 7
            color: Theme.green
            period: 1.4
            opacity: 1 - nameValue.opacity
            visible: opacity > 0
        }

        Item {
            x: 10
            height: root.stripHeight
            opacity: nameValue.opacity
            visible: opacity > 0

            QuibMark {
                id: mark

                width: 8
                height: 8
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.ink
            }

            Label {
                anchors.left: mark.right
                anchors.leftMargin: 4
                anchors.verticalCenter: parent.verticalCenter
                text: "QUIB"
                font: Theme.pixel(6, 1.2)
                color: Theme.ink
            }
        }

        IslandReveal {
            id: reveal

            y: root.stripHeight
            width: parent.width
            content: card
            prepared: root.stretched
            revealed: root.unfurled
        }
    }

    Component {
        id: card

        Item {
            implicitHeight: 10 + title.implicitHeight + 6 + amount.implicitHeight + 6 + 13 + 10

            Label {
                id: title

                x: 14
                y: 10
                text: "TOTAL BALANCE"
                font: Theme.term(6, Theme.Bold, 1.6)
                color: Theme.muted
            }

            Label {
                id: amount

                x: 14
                anchors.top: title.bottom
                anchors.topMargin: 6
                text: "$1,234.56"
                font: Theme.term(19, Theme.Heavy)
                color: Theme.ink
            }

            Rectangle {
                id: filled

                x: 14
                anchors.top: amount.bottom
                anchors.topMargin: 6
                width: 46
                height: 13
                radius: 4
                color: Theme.green
                antialiasing: true
            }

            Rectangle {
                anchors.left: filled.right
                anchors.leftMargin: 5
                anchors.top: filled.top
                width: 46
                height: 13
                radius: 4
                color: Qt.alpha("black", 0)
                border.width: 1
                border.color: Qt.alpha(Theme.green, 0.6)
                antialiasing: true
            }
        }
    }
}
