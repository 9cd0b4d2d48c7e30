import Corvane.Look.Motion
import QtQuick

// The fading in of a line while the rows below it make room. It disappears at once.
AnimatedValue {
    id: root

    required property bool shown

    target: root.shown ? 1 : 0
    fades: true
    Component.onCompleted: root.useSpring(0.42, 0.88)
}
