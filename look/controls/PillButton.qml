import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// A text button with an optional pictogram, filled or outlined, that swells under the pointer.
Item {
    id: root

    required property string label
    // What assistive technology says after the label.
    property string description: ""
    property int icon: Pictogram.None
    property bool filled: false
    signal triggered

    readonly property color contentColor: root.filled ? "black" : Theme.green
    // True while the pointer or the keyboard is on the button.
    readonly property bool aimedAt: area.containsMouse || area.activeFocus
    // Opacities and radii must not follow the spring's overshoot.
    readonly property real glow: hover.opacity

    // Computed here, because positioners update their size one frame later.
    implicitWidth: title.implicitWidth + (pictogram.visible ? pictogram.implicitWidth + row.spacing : 0) + 24
    implicitHeight: Math.max(title.implicitHeight, pictogram.visible ? pictogram.implicitHeight : 0) + 14
    scale: 1 + 0.05 * hover.value

    AnimatedValue {
        id: hover

        target: area.containsMouse ? 1 : 0
        Component.onCompleted: hover.useSpring(0.28, 0.65)
    }

    SquishStyle {
        id: squish

        pressed: area.pressed
    }

    Item {
        anchors.fill: parent
        scale: squish.value

        SoftShadow {
            anchors.fill: parent
            // It would be visible through a dimmed fill.
            visible: root.filled && root.enabled
            color: Theme.green
            radius: 5 + 5 * root.glow
            opacity: 0.18 + 0.27 * root.glow
        }

        RoundedBox {
            anchors.fill: parent
            anchors.margins: -1
            radius: 4
            color: root.filled ? Theme.green : Qt.alpha(Theme.green, 0.12 * root.glow)
            borderWidth: root.filled ? 0 : 1
            borderColor: Qt.alpha(Theme.green, 0.6 + 0.3 * root.glow)
        }

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 4

            Pictogram {
                id: pictogram

                anchors.verticalCenter: parent.verticalCenter
                visible: root.icon !== Pictogram.None
                symbol: root.icon
                fontSize: 8
                color: root.contentColor
            }

            Label {
                id: title

                anchors.verticalCenter: parent.verticalCenter
                text: root.label
                font: Theme.pixel(9, 1.5)
                color: root.contentColor
                Accessible.ignored: true
            }
        }
    }

    PressArea {
        id: area

        anchors.fill: parent
        label: root.label
        description: root.description
        onTriggered: root.triggered()
    }
}
