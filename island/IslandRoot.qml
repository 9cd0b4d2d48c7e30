pragma ComponentBehavior: Bound

import Corvane.Core
import Corvane.Island
import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import QtQuick

// The content of the panel: the black island at its top centre, which changes between the collapsed
// tab, the widened strip and the expanded card according to the controller's flags.
Item {
    id: root

    required property WalletModel model
    required property IslandController island

    // The cards. An empty slot shows an empty card of the same size.
    property Component backupCard: null
    property Component setupCard: null
    property Component balanceCard: null
    property Component settingsCard: null
    property Component receivePane: null
    property Component sendPane: null
    // Shown beside the product's name, to mark a wallet that is not real.
    property string badge: ""

    readonly property bool open: root.island.expanded || root.island.widened
    // The shown card; null while there is none.
    readonly property CardFrame shownCard: ((reveal.item as CardSwitcher)?.current.item as CardFrame) ?? null
    readonly property Item focusedItem: root.Window.activeFocusItem
    readonly property bool hasFocus: root.focusedItem !== null && root.focusedItem !== root.Window.contentItem
    // The control that had the keyboard focus last, while it exists.
    property Item lastFocused: null

    function chosenCard() {
        const slot = root.slotOf(root.island.card);
        return slot === null ? emptySlot : slot;
    }

    // Moves the keyboard focus to where the user continues on the shown card. A pointer's user only
    // needs it in a field.
    function placeFocus() {
        const card = root.shownCard;
        if (card === null || !card.visible)
            return;
        const start = card.firstField ?? (root.island.keyboardDriven ? card.firstControl ?? card : null);
        start?.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    // The same for somebody who begins to use the keyboard.
    function startFocus() {
        if (!root.hasFocus)
            root.placeFocus();
    }

    // Gives a keyboard user the next control when the focused one has disappeared. One that is only
    // disabled for the moment gets its focus back from Qt.
    function keepFocus() {
        if (root.hasFocus || !root.Window.active || !root.island.keyboardDriven || root.lastFocused?.visible)
            return;
        if (root.lastFocused === null)
            root.placeFocus();
        else
            root.lastFocused.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    function goBack() {
        if (!root.island.expanded || !root.shownCard?.goBack())
            root.island.goBack();
    }

    onShownCardChanged: Qt.callLater(root.placeFocus) // qmllint disable
    onFocusedItemChanged: {
        if (root.hasFocus)
            root.lastFocused = root.focusedItem;
        else
            Qt.callLater(root.keepFocus); // qmllint disable
    }

    Connections {
        target: root.shownCard

        function onRestarted() {
            Qt.callLater(root.placeFocus); // qmllint disable
        }
    }

    Shortcut {
        sequence: "Escape"
        autoRepeat: false
        onActivated: root.goBack()
    }

    function slotOf(card) {
        switch (card) {
        case Card.Locked:
            return lockedCard;
        case Card.Backup:
            return root.backupCard;
        case Card.Setup:
            return root.setupCard;
        case Card.Balance:
            return root.balanceCard;
        case Card.Settings:
            return root.settingsCard;
        case Card.Receive:
            return root.receivePane;
        default:
            return root.sendPane;
        }
    }

    // The collapsed island is asymmetric around the notch, whose centre is the panel's centre.
    function bandOffset(containerWidth) {
        if (root.open || root.island.notchWidth <= 0)
            return 0;
        return root.island.collapsedWidth + 1 < containerWidth ? -20 : 0;
    }

    AnimatedValue {
        id: offsetValue

        transaction: root.island.transaction
        target: root.bandOffset(root.width)
        tolerance: 0.05
    }

    IslandBody {
        id: body

        middle: root.island.stageMiddle + offsetValue.value
        transaction: root.island.transaction
        wantedWidth: root.open ? 620 : root.island.collapsedWidth
        wantedHeight: root.island.topBandHeight + (root.island.expanded ? reveal.implicitHeight : 0)
        wantedRadius: root.open ? 16 : 8
        shadowRadius: 26
        shadowY: 12
        shadow: root.island.expanded ? 0.55 : root.island.widened ? 0.25 : 0
        line: root.island.expanded ? 1 : 0
        swell: root.island.hovering && !root.open ? 1.035 : 1
        onRadiusChanged: root.publishOutline()

        TopStrip {
            width: parent.width
            model: root.model
            island: root.island
            badge: root.badge
        }

        IslandReveal {
            id: reveal

            y: root.island.topBandHeight
            width: 620
            x: (parent.width - width) / 2
            content: cardGroup
            transaction: root.island.transaction
            prepared: root.open
            revealed: root.island.expanded
        }
    }

    Connections {
        target: root.island

        function onCardChanged() {
            (reveal.item as CardSwitcher)?.show(root.chosenCard());
        }

        function onExpandedChanged() {
            Qt.callLater(root.placeFocus); // qmllint disable
        }

        function onKeyboardDrivenChanged() {
            Qt.callLater(root.startFocus); // qmllint disable
        }
    }

    // Created each time the island opens, so that it uses no resources at rest.
    Component {
        id: cardGroup

        CardSwitcher {
            id: cards

            width: 620
            transaction: root.island.transaction
            Component.onCompleted: cards.show(root.chosenCard())
        }
    }

    Component {
        id: lockedCard

        LockedCard {
            island: root.island
        }
    }

    Component {
        id: emptySlot

        Item {
            implicitHeight: root.island.size(root.island.pane).height - root.island.topBandHeight
        }
    }

    // The panel lets clicks outside of this area through.
    readonly property rect outline: Qt.rect(body.x + body.width * (1 - body.scale) / 2, 0, body.width * body.scale, body.height * body.scale)
    onOutlineChanged: root.publishOutline()
    Component.onCompleted: root.publishOutline()

    function publishOutline() {
        root.island.setContentOutline(root.outline, body.radius);
    }
}
