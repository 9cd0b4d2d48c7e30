import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import Corvane.Onboarding
import QtQuick

// A short introduction to the program.
TourPage {
    id: root

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 72
        height: 72

        Glow {
            anchors.fill: parent
            source: QuibMark {
                width: 72
                height: 72
                color: Theme.green
            }
            radius: 26
            opacity: 0.45 * mark.brightness
        }

        BreathingMark {
            id: mark

            size: 72
            color: Theme.green
            period: 2
        }
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "CORVANE"
        font: Theme.pixel(26, 4)
        color: Theme.ink
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "a solana wallet, forged into the notch."
        font: Theme.term(13)
        color: Theme.muted
    }

    SpacedLines {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "your balance lives above the menu bar. hover to open.\nfingerprint to unlock. one click to send."
        font: Theme.term(10)
    }
}
