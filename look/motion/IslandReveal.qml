import Corvane.Look.Motion
import QtQuick

// How the island's body comes and goes: a moment after the island has begun to unfold it fades in out
// of a blur; when the island folds it is gone almost at once.
Presence {
    id: root

    // Set this instead of `present`, which follows with the animation of its direction.
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
