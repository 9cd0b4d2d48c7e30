import Corvane.Look
import Corvane.Look.Paint
import QtQuick

// The filled and outlined background of fields and similar boxes on a card.
Item {
    id: root

    property color outline: Theme.line
    property real radius: 9

    RoundedBox {
        anchors.fill: parent
        anchors.margins: -1
        radius: root.radius
        color: Theme.card
        borderWidth: 1
        borderColor: root.outline
    }
}
