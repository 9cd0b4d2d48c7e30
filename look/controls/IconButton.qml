import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// A round, borderless pictogram button.
Item {
    id: root

    required property int symbol
    // The button's name for assistive technology.
    required property string label
    signal triggered

    implicitWidth: 22
    implicitHeight: 22

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        visible: area.containsMouse
        color: Theme.card
        antialiasing: true
    }

    Pictogram {
        anchors.centerIn: parent
        symbol: root.symbol
        fontSize: 10
        color: area.containsMouse ? Theme.ink : Theme.muted
    }

    PressArea {
        id: area

        anchors.fill: parent
        label: root.label
        radius: 11
        onTriggered: root.triggered()
    }
}
