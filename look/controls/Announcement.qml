import QtQuick

// Has a screen reader say a text the moment it comes up, wherever its user is. Shows nothing.
// Qt 6.4 knows no announcements; a notification that appears is the same to screen readers.
Item {
    id: root

    required property string text

    width: 1
    height: 1
    visible: root.complete && root.text !== ""
    Accessible.role: Accessible.Notification
    Accessible.name: root.text

    // What is visible from its beginning has not appeared.
    property bool complete: false
    Component.onCompleted: root.complete = true
}
