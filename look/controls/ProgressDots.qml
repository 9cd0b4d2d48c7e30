pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Motion
import QtQuick

// One dot per step; the dot of the current step is long and green.
Row {
    id: root

    required property int count
    required property int current
    // The description for assistive technology.
    required property string label

    spacing: 7
    Accessible.role: Accessible.StaticText
    Accessible.name: root.label

    Repeater {
        model: root.count

        Rectangle {
            id: dot

            required property int index
            readonly property real amount: green.opacity

            // Rounded to device pixels: moving edges between pixels would leave traces.
            width: Math.round((5 + 11 * here.value) * Screen.devicePixelRatio) / Screen.devicePixelRatio
            height: 5
            color: Qt.alpha(Theme.line, 0.18 * (1 - dot.amount))

            AnimatedValue {
                id: here

                target: dot.index === root.current ? 1 : 0
                Component.onCompleted: here.useSpring(0.35, 0.8)
            }

            AnimatedValue {
                id: green

                fades: true
                target: here.target
                Component.onCompleted: green.useSpring(0.35, 0.8)
            }

            Rectangle {
                anchors.fill: parent
                color: Theme.green
                opacity: dot.amount
            }
        }
    }
}
