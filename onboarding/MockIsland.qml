pragma ComponentBehavior: Bound

import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// A miniature of the island: the resting tab, the strip, or the strip with a card.
IslandBody {
    id: root

    required property bool stretched
    required property bool unfurled

    readonly property real stripHeight: 16

    wantedWidth: root.stretched ? 250 : 92
    wantedHeight: root.stripHeight + (root.unfurled ? reveal.implicitHeight : 0)
    wantedRadius: root.stretched ? 12 : 5
    shadowRadius: 14
    shadowY: 7
    shadow: root.unfurled ? 0.6 : 0

    // The progress from the mark (0) to the name (1) in the strip.
    AnimatedValue {
        id: nameValue

        fades: true
        transaction: root.transaction
        target: root.stretched ? 1 : 0
    }

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

    Component {
        id: card

        Item {
            implicitHeight: 10 + rows.implicitHeight + 10

            Stack {
                id: rows

                x: 14
                y: 10
                spacing: 6

                Label {
                    text: "TOTAL BALANCE"
                    font: Theme.term(6, Theme.Bold, 1.6)
                    color: Theme.muted
                }

                Label {
                    text: "$1,234.56"
                    font: Theme.term(19, Theme.Heavy)
                    color: Theme.ink
                }

                Item {
                    height: 13

                    Rectangle {
                        width: 46
                        height: 13
                        radius: 4
                        color: Theme.green
                        antialiasing: true
                    }

                    Rectangle {
                        x: 46 + 5
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
    }
}
