import Corvane.Look.Motion
import QtQuick

// The press feedback of a button: its content shrinks and springs back.
AnimatedValue {
    id: root

    required property bool pressed

    target: root.pressed ? 0.92 : 1
    Component.onCompleted: root.useSpring(0.24, 0.55)
}
