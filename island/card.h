#pragma once

#include "island/island_pane.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::island {

/// Named `Card` in QML. A separate namespace, because Qt supports one QML name per namespace.
namespace cards {

Q_NAMESPACE
QML_NAMED_ELEMENT(Card)

/// The cards of the expanded island.
enum class Card { Locked, Backup, Setup, Balance, Settings, Receive, Send };
Q_ENUM_NS(Card)

} // namespace cards

using cards::Card;

/// All values that determine the card. When one changes, the card is replaced, possibly by a new
/// one of the same kind.
struct CardChoice
{
    bool unlocked = false;
    IslandPane pane = IslandPane::Balance;
    bool hasKey = false;
    bool hasPendingBackup = false;

    [[nodiscard]] bool operator==(const CardChoice &) const = default;
};

/// The card to show. Until the island is unlocked, the same card for every pane.
[[nodiscard]] Card chosenCard(const CardChoice &choice);

} // namespace corvane::island
