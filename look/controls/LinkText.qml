import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// A plain button whose label is an underlined text, in ink under the pointer.
PlainButton {
    id: root

    required property color color

    implicitWidth: text.implicitWidth
    implicitHeight: text.implicitHeight
    swell: 0
    // Eight points are hard to hit.
    reach: 3

    Label {
        id: text

        text: root.title
        font: Theme.underlined(Theme.term(8, Theme.Bold))
        color: root.hovered ? Theme.ink : root.color
        Accessible.ignored: true
    }
}
