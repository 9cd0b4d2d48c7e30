import Corvane.Look
import QtQuick

// What every button shares: pointer, keyboard and assistive technology all trigger it.
MouseArea {
    id: root

    required property string label
    property alias ringRadius: ring.radius
    signal triggered

    hoverEnabled: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.focusable: true
    Accessible.onPressAction: {
        if (root.enabled)
            root.triggered();
    }
    onClicked: root.triggered()
    Keys.onSpacePressed: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onEnterPressed: root.triggered()

    FocusRing {
        id: ring

        visible: root.activeFocus
    }
}
