import Corvane.Look.Motion
import QtQuick

// Shows one card at a time. When the card changes, the new card rises from below while the old one
// moves up and fades out, with the animation of the current transaction.
Item {
    id: root

    property Transaction transaction: null

    implicitHeight: root.current.implicitHeight
    height: root.implicitHeight

    property Presence current: first
    readonly property Presence other: root.current === first ? second : first

    // Shows `card`, without a transition if there was no card before.
    function show(card) {
        if (root.current.content === null) {
            root.current.content = card;
            root.current.present = true;
            root.current.motion.jumpTo(1);
            return;
        }
        // A card that was not visible yet needs no transition.
        if (root.current.amount === 0) {
            root.current.content = card;
            return;
        }
        const leaving = root.current;
        const coming = root.other;
        // The card before, which may still be leaving, turns round.
        if (coming.content !== card || coming.amount === 0) {
            coming.present = false;
            coming.motion.jumpTo(0);
            coming.content = card;
        }
        coming.present = true;
        leaving.present = false;
        root.current = coming;
    }

    Presence {
        id: first

        width: root.width
        transaction: root.transaction
        enterBlur: 5
        enterY: 12
        leaveBlur: 5
        leaveY: -8
        z: root.current === first ? 1 : 0
        enabled: root.current === first
    }

    Presence {
        id: second

        width: root.width
        transaction: root.transaction
        enterBlur: 5
        enterY: 12
        leaveBlur: 5
        leaveY: -8
        z: root.current === second ? 1 : 0
        enabled: root.current === second
    }
}
