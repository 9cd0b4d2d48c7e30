#pragma once

#include "island/island_controller.h"
#include "panes/card_models.h"

#include <QQmlEngine>
#include <QString>

#include <memory>

class QQuickItem;

namespace corvane::app {

/// Loads and owns the island's views. Main thread; requires a Theme.
class IslandContent
{
public:
    /// `badge` is shown beside the product's name; may be empty.
    IslandContent(panes::CardServices cardServices, QString badge);
    ~IslandContent();

    /// Creates the root view of `island`. A view that cannot be loaded is a programming error and
    /// aborts the process.
    [[nodiscard]] QQuickItem *make(island::IslandController &island);

    /// The QML engine, which other windows share.
    [[nodiscard]] QQmlEngine &engine() { return m_engine; }

    /// Releases memory that was only needed while cards were shown. Called when the island is at
    /// rest.
    void releaseUnused();

    /// Destroys the root view. Must be called before the objects that it shows are destroyed.
    void unload();

private:
    panes::CardServices m_cardServices;
    QString m_badge;
    QQmlEngine m_engine;
    std::unique_ptr<panes::CardModels> m_cards;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace corvane::app
