import QtQuick

// Makes a screen reader speak a text as soon as it is set, wherever the focus is. Invisible. Qt 6.4
// has no announcements; screen readers treat a notification that appears the same way.
Item {
    id: root

    required property string text

    width: 1
    height: 1
    visible: root.complete && root.text !== ""
    Accessible.role: Accessible.Notification
    Accessible.name: root.text

    // An item that is visible from the start does not count as appearing.
    property bool complete: false
    Component.onCompleted: root.complete = true
}
