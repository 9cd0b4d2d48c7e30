import Corvane.Look
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// The one-day price chart, revealed from left to right when it appears.
Item {
    id: root

    required property list<real> wave

    AnimatedValue {
        id: drawn

        target: 0
    }

    // A card may be visible before its creation is complete, so the curve is set here.
    function draw() {
        drawn.useEaseOut(0.7, 0.28);
        drawn.jumpTo(0);
        if (root.visible)
            drawn.target = 1;
    }

    onVisibleChanged: root.draw()
    Component.onCompleted: root.draw()

    Item {
        width: root.width * drawn.value
        height: root.height
        clip: true
        visible: root.wave.length > 2

        SparklineShape {
            width: root.width
            height: root.height
            points: root.wave
            color: Theme.green
        }
    }
}
