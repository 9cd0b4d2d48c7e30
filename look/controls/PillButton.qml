import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import QtQuick

// A text button with an optional pictogram, filled or outlined.
PlainButton {
    id: root

    required property string label
    property int icon: Pictogram.None
    property bool filled: false

    readonly property color contentColor: root.filled ? "black" : Theme.green

    title: root.label
    // Computed here, because positioners update their size one frame later.
    implicitWidth: text.implicitWidth + (pictogram.visible ? pictogram.implicitWidth + row.spacing : 0) + 24
    implicitHeight: Math.max(text.implicitHeight, pictogram.visible ? pictogram.implicitHeight : 0) + 14

    SoftShadow {
        anchors.fill: parent
        visible: root.filled
        // It would be seen through a dimmed fill.
        hollowRadius: root.enabled ? -1 : root.radius
        color: Theme.green
        radius: 5 + 5 * root.warmth
        opacity: 0.18 + 0.27 * root.warmth
    }

    RoundedBox {
        anchors.fill: parent
        anchors.margins: -1
        radius: root.radius
        color: root.filled ? Theme.green : Qt.alpha(Theme.green, 0.12 * root.warmth)
        borderWidth: root.filled ? 0 : 1
        borderColor: Qt.alpha(Theme.green, 0.6 + 0.3 * root.warmth)
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4

        Pictogram {
            id: pictogram

            anchors.verticalCenter: parent.verticalCenter
            visible: root.icon !== Pictogram.None
            symbol: root.icon
            fontSize: 8
            color: root.contentColor
        }

        Label {
            id: text

            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            font: Theme.pixel(9, 1.5)
            color: root.contentColor
            Accessible.ignored: true
        }
    }
}
