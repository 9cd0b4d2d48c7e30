import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// A plain button whose label is a title on green; it glows under the pointer.
PlainButton {
    id: root

    required property real horizontalPadding
    required property real verticalPadding

    implicitWidth: text.implicitWidth + 2 * root.horizontalPadding
    implicitHeight: text.implicitHeight + 2 * root.verticalPadding

    SoftShadow {
        anchors.fill: parent
        visible: root.warmth > 0
        color: Theme.green
        radius: 10
        opacity: 0.45 * root.warmth
    }

    RoundedBox {
        anchors.fill: parent
        anchors.margins: -1
        radius: root.radius
        color: Theme.green
    }

    Label {
        id: text

        anchors.centerIn: parent
        text: root.title
        font: Theme.pixel(9, 1.5)
        color: "black"
        Accessible.ignored: true
    }
}
