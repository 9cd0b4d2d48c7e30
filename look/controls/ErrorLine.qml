import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// An error message in one red line, spoken by screen readers when it appears. Without a text it has no
// height. (A height of the Label itself would depend on the implicit height that follows from it.)
Item {
    id: root

    property alias text: line.text

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
        color: Theme.red
        Accessible.role: Accessible.Notification
        // Set before the notification that the line has appeared.
        Accessible.ignored: false
    }
}
