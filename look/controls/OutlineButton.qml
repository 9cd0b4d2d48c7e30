import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// A plain button whose label is a title in a faint outline of its own colour; outline and ground
// become stronger under the pointer.
PlainButton {
    id: root

    required property color color
    required property font font
    required property real horizontalPadding
    required property real verticalPadding

    implicitWidth: text.implicitWidth + 2 * root.horizontalPadding
    implicitHeight: text.implicitHeight + 2 * root.verticalPadding

    RoundedBox {
        anchors.fill: parent
        anchors.margins: -1
        radius: root.radius
        color: Qt.alpha(root.color, 0.12 * root.warmth)
        borderWidth: 1
        borderColor: Qt.alpha(root.color, 0.5 + 0.4 * root.warmth)
    }

    Label {
        id: text

        anchors.centerIn: parent
        text: root.title
        font: root.font
        color: root.color
        Accessible.ignored: true
    }
}
