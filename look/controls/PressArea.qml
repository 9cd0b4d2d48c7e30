import Corvane.Look.Controls
import QtQuick

// What every button shares: pointer, keyboard and assistive technology all trigger it.
MouseArea {
    id: root

    required property string label
    property alias ringRadius: ring.radius
    signal triggered

    // A MouseArea's own flag hides that of the control around it.
    enabled: root.parent === null || root.parent.enabled
    hoverEnabled: true
    activeFocusOnTab: root.enabled
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.focusable: root.enabled
    // Qt 6.4 does not tell assistive technology that an item is disabled.
    Accessible.description: root.enabled ? "" : "unavailable"
    Accessible.onPressAction: {
        if (root.enabled)
            root.triggered();
    }
    onClicked: root.triggered()
    Keys.onSpacePressed: event => root.press(event)
    Keys.onReturnPressed: event => root.press(event)
    Keys.onEnterPressed: event => root.press(event)

    // A key that is held down presses once: its repetitions are no second decision.
    function press(event) {
        if (!event.isAutoRepeat)
            root.triggered();
    }

    FocusRing {
        id: ring

        visible: root.activeFocus
    }
}
