#include "island/card.h"

namespace corvane::island {

Card chosenCard(const CardChoice &choice)
{
    if (!choice.unlocked) {
        return Card::Locked;
    }
    switch (choice.pane) {
    case IslandPane::Settings:
        return Card::Settings;
    case IslandPane::Receive:
        return Card::Receive;
    case IslandPane::Send:
        return Card::Send;
    case IslandPane::Balance:
        break;
    }
    if (choice.hasPendingBackup) {
        return Card::Backup;
    }
    return choice.hasKey ? Card::Balance : Card::Setup;
}

} // namespace corvane::island
