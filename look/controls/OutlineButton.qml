import Corvane.Look.Controls
import QtQuick

// A plain button whose label is a title in a faint outline of its own colour.
Item {
    id: root

    required property string title
    required property color color
    required property font font
    required property real horizontalPadding
    required property real verticalPadding
    signal triggered

    implicitWidth: text.implicitWidth + 2 * root.horizontalPadding
    implicitHeight: text.implicitHeight + 2 * root.verticalPadding

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: "transparent"
        border.width: 1
        border.color: Qt.alpha(root.color, 0.5)
        antialiasing: true
    }

    Label {
        id: text

        anchors.centerIn: parent
        text: root.title
        font: root.font
        color: root.color
        Accessible.ignored: true
    }

    PressArea {
        anchors.fill: parent
        label: root.title
        onTriggered: root.triggered()
    }
}
