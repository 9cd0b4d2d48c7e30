pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A choice of one of a few options, side by side.
Panel {
    id: root

    // A list of texts, one for each segment.
    required property var titles
    required property int selected
    // The picker's name for assistive technology.
    required property string label
    signal chosen(int index)

    readonly property real segmentWidth: (root.width - 4) / root.titles.length

    implicitWidth: 200
    implicitHeight: 22
    radius: 6
    activeFocusOnTab: true
    Accessible.role: Accessible.Grouping
    Accessible.name: root.label
    Accessible.focusable: true
    Keys.onLeftPressed: root.chosen(Math.max(0, root.selected - 1))
    Keys.onRightPressed: root.chosen(Math.min(root.titles.length - 1, root.selected + 1))

    FocusRing {
        radius: root.radius
        visible: root.activeFocus
    }

    Repeater {
        model: root.titles

        Rectangle {
            id: segment

            required property int index
            required property string modelData
            readonly property bool isSelected: segment.index === root.selected

            x: 2 + segment.index * root.segmentWidth
            y: 2
            width: root.segmentWidth
            height: root.height - 4
            radius: 4
            color: segment.isSelected ? Theme.green : "transparent"
            antialiasing: true

            Label {
                anchors.centerIn: parent
                text: segment.modelData
                font: Theme.term(8, Theme.Bold)
                color: segment.isSelected ? "black" : hover.hovered ? Theme.ink : Theme.muted
                Accessible.ignored: true
            }

            HoverHandler {
                id: hover
            }

            MouseArea {
                anchors.fill: parent
                Accessible.role: Accessible.RadioButton
                Accessible.name: segment.modelData
                Accessible.checkable: true
                Accessible.checked: segment.isSelected
                Accessible.onPressAction: root.chosen(segment.index)
                onClicked: root.chosen(segment.index)
            }
        }
    }
}
