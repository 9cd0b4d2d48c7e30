pragma ComponentBehavior: Bound

import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// The strip at the height of the notch: the breathing mark while the island is collapsed, the
// product's name and the island's buttons while it is expanded.
Item {
    id: root

    required property WalletModel model
    required property IslandController island
    property string badge: ""

    implicitHeight: root.island.topBandHeight
    height: implicitHeight

    // Both rows fade with their own curves.
    AnimatedValue {
        id: restingRow

        target: 1
        fades: true
        Component.onCompleted: {
            restingRow.useEaseOut(0.12);
            restingRow.jumpTo(root.island.expanded ? 0 : 1);
        }
    }

    Connections {
        target: root.island

        function onExpandedChanged() {
            if (root.island.expanded)
                expandedRow.motion.useEaseOut(0.22, 0.2);
            else
                expandedRow.motion.useEaseIn(0.1);
            expandedRow.present = root.island.expanded;
            restingRow.target = root.island.expanded ? 0 : 1;
        }
    }

    BreathingMark {
        id: restingMark

        x: 17
        anchors.verticalCenter: parent.verticalCenter
        size: 11
        color: Theme.green
        period: 2.4
        ticked: true
        opacity: restingRow.opacity
        visible: opacity > 0
        Component.onCompleted: root.island.hoverPolled.connect(restingMark.tick)
    }

    Presence {
        id: expandedRow

        x: 16
        width: root.width - 32
        height: root.height
        content: Item {
            height: root.height

            QuibMark {
                id: mark

                width: 13
                height: 13
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.ink
            }

            Label {
                id: name

                anchors.left: mark.right
                anchors.leftMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                text: "QUIB"
                font: Theme.pixel(9, 1.6)
                color: Theme.ink
            }

            Rectangle {
                anchors.left: name.right
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                width: badge.implicitWidth + 12
                height: badge.implicitHeight + 4
                radius: 4
                color: Theme.red
                visible: root.badge !== ""

                Label {
                    id: badge

                    anchors.centerIn: parent
                    text: root.badge
                    font: Theme.pixel(8, 1)
                    color: "black"
                }
            }

            IconButton {
                anchors.right: settings.left
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                symbol: Pictogram.ArrowClockwise
                label: "Refresh"
                busy: root.model.refreshing
                visible: root.island.islandUnlocked
                onTriggered: root.model.refresh()
            }

            IconButton {
                id: settings

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: Pictogram.GearShape
                label: "Settings"
                visible: root.island.islandUnlocked
                onTriggered: root.island.setPane(IslandPane.Settings)
            }

            Pictogram {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: Pictogram.LockFill
                fontSize: 10
                color: Theme.muted
                visible: !root.island.islandUnlocked
                Accessible.role: Accessible.Graphic
                Accessible.name: "Locked"
            }
        }
    }
}
