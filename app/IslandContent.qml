pragma ComponentBehavior: Bound

import Corvane.Island
import Corvane.Panes
import QtQuick

// The island with its cards.
IslandRoot {
    id: root

    backupCard: Component {
        BackupCard {
            model: root.model
            island: root.island
        }
    }

    setupCard: Component {
        SetupCard {
            model: root.model
            island: root.island
        }
    }

    balanceCard: Component {
        BalanceCard {
            model: root.model
            island: root.island
        }
    }

    settingsCard: Component {
        SettingsCard {
            model: root.model
            island: root.island
        }
    }

    receivePane: Component {
        ReceivePane {
            model: root.model
            island: root.island
        }
    }

    sendPane: Component {
        SendPane {
            model: root.model
            island: root.island
        }
    }
}
