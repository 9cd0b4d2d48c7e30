import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A plain button whose label is an underlined text.
Item {
    id: root

    required property string title
    required property color color
    signal triggered

    implicitWidth: text.implicitWidth
    implicitHeight: text.implicitHeight

    Label {
        id: text

        text: root.title
        font: Theme.underlined(Theme.term(8, Theme.Bold))
        color: root.color
        Accessible.ignored: true
    }

    PressArea {
        anchors.fill: parent
        // Enlarges the click area: eight points are hard to hit.
        anchors.margins: -3
        label: root.title
        onTriggered: root.triggered()
    }
}
