import Corvane.Look.Controls
import Corvane.Look.Motion
import QtQuick

// The common part of the buttons that draw a face of their own: it swells under the pointer and is
// squished by a press.
Item {
    id: root

    // The button's name for assistive technology.
    required property string title
    // What assistive technology says after the title.
    property string description: ""
    // The corner radius of the button.
    property real radius: 4
    // How much larger the button is under the pointer.
    property real swell: 0.05
    // Points by which the click area exceeds the face on every side.
    property real reach: 0
    default property alias content: face.data
    signal triggered

    readonly property bool hovered: area.pointedAt
    // The progress of the hover, for opacities and radii, which must not follow the spring's
    // overshoot.
    readonly property real warmth: hover.opacity
    // True while the pointer or the keyboard is on the button.
    readonly property bool aimedAt: area.pointedAt || area.activeFocus

    scale: 1 + root.swell * hover.value

    AnimatedValue {
        id: hover

        target: area.pointedAt ? 1 : 0
        Component.onCompleted: hover.useSpring(0.28, 0.65)
    }

    SquishStyle {
        id: squish

        pressed: area.pressed
    }

    Item {
        id: face

        anchors.fill: parent
        scale: squish.value
    }

    PressArea {
        id: area

        anchors.fill: parent
        anchors.margins: -root.reach
        label: root.title
        description: root.description
        radius: root.radius
        onTriggered: root.triggered()
    }
}
