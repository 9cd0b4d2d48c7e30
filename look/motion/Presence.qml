import Corvane.Look
import Corvane.Look.Motion
import QtQuick

// Shows a component while it is present, and lets it come and go through ContentFx: it comes from
// opacity 0 with enterBlur and enterY, and leaves to opacity 0 with leaveBlur and leaveY. It moves on
// the animation of the transaction in which `present` was changed.
Item {
    id: root

    property bool present: false
    // Makes the component ahead of its appearance, unseen, so that this does not cost the frame in
    // which it appears.
    property bool prepared: false
    property Component content: null
    property alias transaction: presence.transaction
    property real enterBlur: 0
    property real enterY: 0
    property real leaveBlur: 0
    property real leaveY: 0

    // Where it comes from or leaves to, and where it would be in full: at its place, unless it turned
    // back half-way.
    property real farY: root.enterY
    property real nearY: 0
    property real farBlur: root.enterBlur
    property real nearBlur: 0

    // How much of it there is, 0 to 1, and the moving value behind it for animations of its own.
    readonly property real amount: presence.opacity
    readonly property AnimatedValue motion: presence
    // What the component made, while it is needed.
    readonly property Item item: live.children.length > 0 ? live.children[0] : null
    readonly property bool needed: root.present || root.prepared || presence.value > 0 || presence.running

    implicitWidth: root.item?.implicitWidth ?? 0
    implicitHeight: root.item?.implicitHeight ?? 0
    height: root.implicitHeight

    // A Loader cannot make components that are bound to the file they stand in.
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

    // Goes on from where it is.
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
