import Corvane.Look.Controls
import QtQuick

// The common part of all buttons: pointer, keyboard and assistive technology all trigger it.
MouseArea {
    id: root

    required property string label
    // What assistive technology says after the label.
    property string description: ""
    // The corner radius of the button.
    property alias radius: ring.radius
    signal triggered

    // True while the pointer is on the button. MouseArea's own `containsMouse` starts from where the
    // pointer was last seen in the window, and stays true in a card that opens with the pointer elsewhere.
    readonly property bool pointedAt: hover.hovered

    // MouseArea's own `enabled` hides that of the enclosing control.
    enabled: root.parent === null || root.parent.enabled
    activeFocusOnTab: root.enabled
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.focusable: root.enabled
    // Qt 6.4 does not report to assistive technology that an item is disabled.
    Accessible.description: root.enabled ? root.description : "unavailable"
    Accessible.onPressAction: {
        if (root.enabled)
            root.trigger();
    }
    onClicked: root.trigger()
    Keys.onSpacePressed: event => root.press(event)
    Keys.onReturnPressed: event => root.press(event)
    Keys.onEnterPressed: event => root.press(event)

    // Auto-repeat is ignored: a key that is held down presses the button once.
    function press(event) {
        if (!event.isAutoRepeat)
            root.trigger();
    }

    // A button that disappears with its own press hands the keyboard focus to the next control,
    // unless somebody else has taken it.
    function trigger() {
        const held = root.activeFocus;
        root.triggered();
        if (held && root.activeFocus && !root.visible)
            root.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    HoverHandler {
        id: hover

        enabled: root.enabled
    }

    FocusRing {
        id: ring

        visible: root.activeFocus
    }
}
