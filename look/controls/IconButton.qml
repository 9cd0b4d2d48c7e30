import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// A round, borderless pictogram button.
Item {
    id: root

    required property int symbol
    // The button's name for assistive technology.
    required property string label
    // While what the button started goes on, its pictogram turns, in whole turns.
    property bool busy: false
    signal triggered

    function turn() {
        if (root.busy && !turning.running) {
            turning.jumpTo(0);
            turning.target = 1;
        }
    }

    implicitWidth: 22
    implicitHeight: 22
    onBusyChanged: root.turn()
    Component.onCompleted: {
        turning.useEaseOut(0.9);
        root.turn();
    }

    AnimatedValue {
        id: turning

        target: 0
        onRunningChanged: root.turn()
    }

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        visible: area.pointedAt
        color: Theme.card
        antialiasing: true
    }

    Pictogram {
        anchors.centerIn: parent
        symbol: root.symbol
        fontSize: 10
        rotation: 360 * turning.value
        // With reduced motion nothing turns.
        color: root.busy && Theme.reducedMotion ? Theme.green : area.pointedAt ? Theme.ink : Theme.muted
    }

    PressArea {
        id: area

        anchors.fill: parent
        label: root.label
        description: root.busy ? "busy" : ""
        radius: 11
        onTriggered: root.triggered()
    }
}
