import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A plain button whose label is a title on green.
Item {
    id: root

    required property string title
    required property real horizontalPadding
    required property real verticalPadding
    signal triggered

    implicitWidth: text.implicitWidth + 2 * root.horizontalPadding
    implicitHeight: text.implicitHeight + 2 * root.verticalPadding

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: Theme.green
        antialiasing: true
    }

    Label {
        id: text

        anchors.centerIn: parent
        text: root.title
        font: Theme.pixel(9, 1.5)
        color: "black"
        Accessible.ignored: true
    }

    PressArea {
        anchors.fill: parent
        label: root.title
        onTriggered: root.triggered()
    }
}
