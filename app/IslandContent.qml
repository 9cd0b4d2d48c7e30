pragma ComponentBehavior: Bound

import Corvane.Island
import Corvane.Panes
import QtQuick

// The island with its cards. Each card gets its model when it is created, and both are destroyed
// together.
IslandRoot {
    id: root

    required property CardModels cards

    backupCard: Component {
        BackupCard {
            id: backup

            card: root.cards.backupCard(backup)
        }
    }

    setupCard: Component {
        SetupCard {
            id: setup

            card: root.cards.setupCard(setup)
            presence: root.cards.presenceNotice(setup)
        }
    }

    balanceCard: Component {
        BalanceCard {
            id: balance

            card: root.cards.balanceCard(balance)
            own: root.cards.ownAddress(balance)
        }
    }

    settingsCard: Component {
        SettingsCard {
            id: settings

            card: root.cards.settingsCard(settings)
            own: root.cards.ownAddress(settings)
            presence: root.cards.presenceNotice(settings)
        }
    }

    receivePane: Component {
        ReceivePane {
            id: receive

            card: root.cards.receivePane(receive)
            own: root.cards.ownAddress(receive)
        }
    }

    sendPane: Component {
        SendPane {
            id: send

            card: root.cards.sendPane(send)
            presence: root.cards.presenceNotice(send)
        }
    }
}
