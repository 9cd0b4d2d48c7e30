import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// The common part of all fields: panel and outline, placeholder, focus ring, and keyboard focus for
// the window on a click. The editable line is the content.
Item {
    id: root

    required property string placeholder
    required property Item line
    required property bool empty
    property bool invalid: false
    default property alias content: inside.data

    implicitWidth: prompt.implicitWidth + 20
    implicitHeight: root.line.implicitHeight + 12

    Panel {
        id: panel

        anchors.fill: parent
        outline: root.invalid ? Qt.alpha(Theme.red, 0.6) : Theme.line
    }

    FocusRing {
        radius: panel.radius
        visible: root.line.activeFocus
    }

    Item {
        id: inside

        x: 10
        y: 6
        width: root.width - 20
        height: root.height - 12
        clip: true
    }

    Label {
        id: prompt

        x: 10
        y: 6
        width: root.width - 20
        elide: Text.ElideRight
        visible: root.empty
        text: root.placeholder
        font: Theme.term(10)
        color: Theme.muted
        Accessible.ignored: true
    }

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.IBeamCursor
        // The window manager does not give the island keyboard focus.
        onPressed: mouse => {
            root.Window.window.requestActivate();
            root.line.forceActiveFocus(Qt.MouseFocusReason);
            mouse.accepted = false;
        }
    }
}
