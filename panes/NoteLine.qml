import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A line that is told only when there is something to tell: muted, or red where money may be lost.
// Without a text it has no height.
Item {
    id: root

    property alias text: line.text
    property bool severe: false

    implicitHeight: root.text === "" ? 0 : line.implicitHeight

    Appearance {
        id: appearance

        shown: root.text !== ""
    }

    Label {
        id: line

        width: root.width
        visible: root.text !== ""
        opacity: appearance.opacity
        wrapMode: Text.WordWrap
        font: Theme.term(8)
        color: root.severe ? Theme.red : Theme.muted
        Accessible.role: root.severe ? Accessible.Notification : Accessible.StaticText
    }
}
