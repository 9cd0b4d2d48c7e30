#pragma once

#include "island/island_pane.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::island {

/// Known to views as `Card`; Qt has one such name for each namespace.
namespace cards {

Q_NAMESPACE
QML_NAMED_ELEMENT(Card)

/// What the expanded island can show.
enum class Card { Locked, Backup, Setup, Balance, Settings, Receive, Send };
Q_ENUM_NS(Card)

} // namespace cards

using cards::Card;

/// All that decides which card is shown. Where it changes, the card is replaced, also by another of
/// the same kind.
struct CardChoice
{
    bool unlocked = false;
    IslandPane pane = IslandPane::Balance;
    bool hasKey = false;
    bool hasPendingBackup = false;

    [[nodiscard]] bool operator==(const CardChoice &) const = default;
};

/// The card to show. Until the island is unlocked there is one for every pane.
[[nodiscard]] Card chosenCard(const CardChoice &choice);

} // namespace corvane::island
