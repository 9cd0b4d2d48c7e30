pragma ComponentBehavior: Bound

import Corvane.Island
import Corvane.Panes
import QtQuick

// The island with its cards.
IslandRoot {
    id: root

    balanceCard: Component {
        BalanceCard {
            model: root.model
            island: root.island
        }
    }
}
