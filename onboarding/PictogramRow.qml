import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// A pictogram, a title, and a text below the title.
Item {
    id: root

    required property int icon
    required property real iconSize
    required property color iconColor
    // What the pictogram says; empty if the texts say everything.
    property string iconLabel: ""
    required property string title
    required property string detail

    readonly property real textX: 34

    implicitWidth: root.textX + Math.max(title.implicitWidth, detail.implicitWidth)
    implicitHeight: texts.implicitHeight

    Pictogram {
        x: (22 - implicitWidth) / 2
        symbol: root.icon
        fontSize: root.iconSize
        color: root.iconColor
        Accessible.role: Accessible.Graphic
        Accessible.name: root.iconLabel
        Accessible.ignored: root.iconLabel === ""
    }

    Stack {
        id: texts

        x: root.textX
        width: root.width - root.textX
        spacing: 3

        Label {
            id: title

            text: root.title
            font: Theme.term(11, Theme.Heavy)
            color: Theme.ink
        }

        Label {
            id: detail

            width: parent.width
            text: root.detail
            wrapMode: Text.WordWrap
            font: Theme.term(9)
            color: Theme.muted
        }
    }
}
