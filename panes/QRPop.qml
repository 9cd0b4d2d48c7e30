import Corvane.Look
import Corvane.Look.Motion
import QtQuick

// Shows its content with a pop animation, shortly after it becomes visible.
Item {
    id: root

    scale: Theme.reducedMotion ? 1 : 0.86 + 0.14 * shown.value
    opacity: shown.opacity

    AnimatedValue {
        id: shown

        target: 0
        fades: true
        Component.onCompleted: {
            shown.useSpring(0.45, 0.7, 0.12);
            shown.target = 1;
        }
    }
}
