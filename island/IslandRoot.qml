pragma ComponentBehavior: Bound

import Corvane.Core
import Corvane.Island
import Corvane.Look
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

    function chosenCard() {
        const slot = root.slotOf(root.island.card);
        return slot === null ? emptySlot : slot;
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

        x: body.snapped((root.width - body.width) / 2 + offsetValue.value)
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
