import Corvane.Look.Motion
import QtQuick

// The transition of the island's body: shortly after the island starts to open, it fades in from a
// blur; when the island collapses, it disappears almost immediately.
Presence {
    id: root

    // Set this instead of `present`, which follows with the animation for its direction.
    property bool revealed: false

    enterBlur: 7
    enterY: 8
    leaveBlur: 4
    leaveY: 4

    function follow() {
        if (root.revealed)
            root.motion.useEaseOut(0.24, 0.16);
        else
            root.motion.useEaseIn(0.1);
        root.present = root.revealed;
    }

    onRevealedChanged: root.follow()
}
