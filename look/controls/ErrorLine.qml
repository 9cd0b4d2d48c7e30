import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// What went wrong, in one red line, which a screen reader says when it comes up.
Label {
    id: root

    height: root.text === "" ? 0 : root.implicitHeight
    visible: root.text !== ""
    wrapMode: Text.WordWrap
    font: Theme.term(8)
    color: Theme.red
    Accessible.role: Accessible.Notification
    // Before it is told that the line has come up.
    Accessible.ignored: false
}
