import Corvane.Look.Paint
import QtQuick

// Content that fades (opacity), blurs (blur, radius in points) and rises (y). With opacity 1, blur
// 0 and y 0 it shows its content unchanged.
Item {
    id: root

    default property alias content: inside.data
    property real blur: 0

    // Must be called when the content has been replaced: drops the picture of the old content.
    function forget() {
        veil.drop();
    }

    Item {
        id: live

        // Content that is only about to appear is not drawn until there is a picture of it: its first
        // frame is the most expensive one.
        readonly property bool awaited: veil.capturing && root.opacity < 0.25

        anchors.fill: parent
        opacity: veil.showing || live.awaited ? 0 : 1

        Item {
            id: inside

            anchors.fill: parent
            // The least transparency that the painter knows is 1/256.
            opacity: veil.capturing ? 255 / 256 : 1
        }
    }

    BlurVeil {
        id: veil

        anchors.fill: parent
        source: live
        // Drops the picture once the item is invisible.
        radius: root.visible ? root.blur : 0
    }
}
