#pragma once

#include "island/island_controller.h"
#include "panes/card_models.h"

#include <QQmlEngine>
#include <QString>

#include <memory>

class QQuickItem;

namespace corvane::app {

/// Loads the island's views and keeps them. Main thread; needs a Theme.
class IslandContent
{
public:
    /// `badge` is shown beside the product's name; empty for none.
    IslandContent(panes::CardServices cardServices, QString badge);
    ~IslandContent();

    /// The root view of `island`. A view that does not load is a programming error and stops the
    /// process.
    [[nodiscard]] QQuickItem *make(island::IslandController &island);

    /// For what is shown beside the island; it shares what the engine has loaded.
    [[nodiscard]] QQmlEngine &engine() { return m_engine; }

    /// Gives up what was only needed while cards were shown, when the island has come to rest.
    void releaseUnused();

    /// Destroys the root view; must come before the end of what it shows.
    void unload();

private:
    panes::CardServices m_cardServices;
    QString m_badge;
    QQmlEngine m_engine;
    std::unique_ptr<panes::CardModels> m_cards;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace corvane::app
