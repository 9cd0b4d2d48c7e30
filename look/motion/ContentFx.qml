import Corvane.Look.Paint
import QtQuick

// Content that fades (opacity), blurs (blur, radius in points) and rises (y). With opacity 1, blur 0
// and y 0 it is just its content.
Item {
    id: root

    default property alias content: live.data
    property real blur: 0

    // To be called when the content has been replaced: what was pictured is gone.
    function forget() {
        veil.drop();
    }

    Item {
        id: live

        anchors.fill: parent
        opacity: veil.showing ? 0 : 1
    }

    BlurVeil {
        id: veil

        anchors.fill: parent
        source: live
        // Nothing is kept of what nobody sees any more.
        radius: root.visible ? root.blur : 0
    }
}
