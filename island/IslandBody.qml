import Corvane.Look
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// The black body of an island, attached to its top edge: its size follows the target values with
// the animation of the current transaction, and its content is clipped at its edges.
Item {
    id: root

    required property Transaction transaction
    required property real wantedWidth
    required property real wantedHeight
    required property real wantedRadius
    required property real shadowRadius
    required property real shadowY
    // Targets of two opacities: of the shadow, and of the grain and the hairline.
    required property real shadow
    property real line: 0
    // Target of the scale around the middle of the top edge.
    property real swell: 1
    // The horizontal middle in the parent's coordinates.
    required property real middle
    default property alias content: inside.data

    readonly property real radius: radiusValue.value
    readonly property real devicePixel: 1 / Screen.devicePixelRatio

    // Rounded to device pixels, so that the outline stays sharp while it moves.
    function snapped(length) {
        return Math.round(length / root.devicePixel) * root.devicePixel;
    }

    // Both edges are rounded, so that an odd width is neither wider nor beside its place.
    x: root.snapped(root.middle - widthValue.value / 2)
    width: root.snapped(root.middle + widthValue.value / 2) - root.x
    height: root.snapped(Math.max(0, heightValue.value))
    scale: swellValue.value
    transformOrigin: Item.Top

    AnimatedValue {
        id: widthValue

        transaction: root.transaction
        target: root.wantedWidth
        tolerance: 0.2
    }

    AnimatedValue {
        id: heightValue

        transaction: root.transaction
        target: root.wantedHeight
        tolerance: 0.2
        // The content may change its height at any time.
        Component.onCompleted: heightValue.useSpringOutside(0.42, 0.88)
    }

    AnimatedValue {
        id: radiusValue

        transaction: root.transaction
        target: root.wantedRadius
        tolerance: 0.05
    }

    AnimatedValue {
        id: shadowValue

        fades: true
        transaction: root.transaction
        target: root.shadow
    }

    AnimatedValue {
        id: lineValue

        fades: true
        transaction: root.transaction
        target: root.line
    }

    AnimatedValue {
        id: swellValue

        transaction: root.transaction
        target: root.swell
    }

    SoftShadow {
        y: root.shadowY
        width: root.width
        height: root.height
        radius: root.shadowRadius
        // The body covers the rest, except for its rounded corners. While it is scaled, pieces would meet
        // within a pixel and leave it out.
        hangingInset: root.scale === 1 ? Qt.size(root.radius, root.shadowY) : Qt.size(0, 0)
        color: "black"
        opacity: shadowValue.opacity
        visible: opacity > 0
    }

    NotchShape {
        width: root.width
        height: root.height
        bottomRadius: radiusValue.value
        trimOpacity: lineValue.opacity
        lineColor: Theme.line
    }

    Item {
        id: inside

        anchors.fill: parent
        clip: true
    }
}
