import Corvane.Look
import Corvane.Look.Motion
import QtQuick

// Shows a component while `present` is true, with transitions by ContentFx: it appears from opacity
// 0, enterBlur and enterY, and disappears to opacity 0, leaveBlur and leaveY. Uses the animation of
// the transaction in which `present` was changed.
Item {
    id: root

    property bool present: false
    // Creates the component in advance, invisible, so that its creation does not delay the frame in
    // which it appears.
    property bool prepared: false
    property Component content: null
    property alias transaction: presence.transaction
    property real enterBlur: 0
    property real enterY: 0
    property real leaveBlur: 0
    property real leaveY: 0

    // The invisible end of the transition (far) and the visible end (near). The visible end is
    // position 0 and blur 0, unless the direction was reversed half-way.
    property real farY: root.enterY
    property real nearY: 0
    property real farBlur: root.enterBlur
    property real nearBlur: 0

    // The progress of the transition, from 0 (absent) to 1 (present), and the animated value behind
    // it for further animations.
    readonly property real amount: presence.opacity
    readonly property AnimatedValue motion: presence
    // The created item, while it is needed.
    readonly property Item item: live.children.length > 0 ? live.children[0] : null
    readonly property bool needed: root.present || root.prepared || presence.value > 0 || presence.running

    implicitWidth: root.item?.implicitWidth ?? 0
    implicitHeight: root.item?.implicitHeight ?? 0
    height: root.implicitHeight

    // Not a Loader, which cannot create bound components of the surrounding file.
    function populate() {
        fx.forget();
        if (root.item !== null) {
            root.item.destroy();
            root.item.parent = null;
        }
        if (root.needed && root.content !== null)
            root.content.createObject(live, {
                width: Qt.binding(() => root.width)
            });
    }

    onNeededChanged: root.populate()
    onContentChanged: root.populate()
    onPresentChanged: {
        root.turn();
        presence.target = root.present ? 1 : 0;
    }

    // Reverses the direction from the current position.
    function turn() {
        const amount = root.amount;
        if (root.present) {
            root.farY = amount > 0 && amount < 1 ? fx.y / (1 - amount) : root.enterY;
            root.farBlur = amount > 0 && amount < 1 ? fx.blur / (1 - amount) : root.enterBlur;
            root.nearY = root.nearBlur = 0;
        } else {
            root.nearY = amount > 0 ? (fx.y - (1 - amount) * root.leaveY) / amount : 0;
            root.nearBlur = amount > 0 ? (fx.blur - (1 - amount) * root.leaveBlur) / amount : 0;
            root.farY = root.leaveY;
            root.farBlur = root.leaveBlur;
        }
    }

    AnimatedValue {
        id: presence

        target: 0
        fades: true
        Component.onCompleted: presence.jumpTo(root.present ? 1 : 0)
    }

    ContentFx {
        id: fx

        readonly property bool moves: !Theme.reducedMotion

        width: root.width
        height: root.height
        y: fx.moves ? (1 - root.amount) * root.farY + root.amount * root.nearY : 0
        opacity: root.amount
        blur: fx.moves ? (1 - root.amount) * root.farBlur + root.amount * root.nearBlur : 0
        visible: root.item !== null && (root.present || root.amount > 0)

        Item {
            id: live

            anchors.fill: parent
        }
    }
}
