import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Onboarding
import QtQuick

// The last page: how to open the island.
TourPage {
    id: root

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: pointer.implicitWidth
        height: pointer.implicitHeight

        Glow {
            anchors.fill: parent
            source: pointer
            radius: 20
            opacity: 0.4
        }

        Pictogram {
            id: pointer

            symbol: Pictogram.CursorArrowMotionLines
            fontSize: 44
            color: Theme.green
        }
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "HOVER THE NOTCH"
        font: Theme.pixel(20, 3)
        color: Theme.ink
    }

    SpacedLines {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "that's it. that's the whole gesture.\nyour island is up there right now."
        font: Theme.term(11)
    }
}
