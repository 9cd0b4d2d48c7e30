import Corvane.Look
import Corvane.Look.Controls
import Corvane.Onboarding
import QtQuick

// The island in miniature, on a screen in miniature.
TourPage {
    id: root

    required property Onboarding onboarding

    IslandDemoModel {
        id: demo

        onboarding: root.onboarding
        shown: root.visible && root.Window.visibility !== Window.Hidden
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "THE ISLAND"
        font: Theme.pixel(18, 3)
        color: Theme.ink
    }

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 400
        height: 210
        radius: 16
        color: Qt.alpha(Theme.line, 0.05)
        border.width: 1
        border.color: Qt.alpha(Theme.line, 0.08)
        antialiasing: true

        MockIsland {
            middle: parent.width / 2
            stretched: demo.stretched
            unfurled: demo.unfurled
            transaction: demo.transaction
        }
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: demo.caption
        font: Theme.term(10)
        color: Theme.muted
    }
}
