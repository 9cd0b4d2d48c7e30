import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// An error message in one red line, spoken by screen readers when it appears.
Label {
    id: root

    height: root.text === "" ? 0 : root.implicitHeight
    visible: root.text !== ""
    wrapMode: Text.WordWrap
    font: Theme.term(8)
    color: Theme.red
    Accessible.role: Accessible.Notification
    // Set before the notification that the line has appeared.
    Accessible.ignored: false
}
