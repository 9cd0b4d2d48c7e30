#include "app/island_content.h"

#include "core/wallet_model.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariant>

namespace corvane::app {

IslandContent::IslandContent(panes::CardServices cardServices, QString badge)
    : m_cardServices(cardServices)
    , m_badge(std::move(badge))
{
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

IslandContent::~IslandContent() = default;

QQuickItem *IslandContent::make(island::IslandController &island)
{
    m_cards = std::make_unique<panes::CardModels>(island.model(), island, m_cardServices);
    QQmlComponent component(&m_engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/Corvane/App/IslandContent.qml")));
    const QVariantMap properties{
        {QStringLiteral("model"), QVariant::fromValue(&island.model())},
        {QStringLiteral("island"), QVariant::fromValue(&island)},
        {QStringLiteral("cards"), QVariant::fromValue(m_cards.get())},
        {QStringLiteral("badge"), m_badge},
    };
    m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
    if (!m_root) {
        qFatal("the island's views do not load: %s", qPrintable(component.errorString()));
    }
    return m_root.get();
}

void IslandContent::releaseUnused()
{
    m_engine.collectGarbage();
    if (m_root && m_root->window() != nullptr) {
        m_root->window()->releaseResources();
    }
}

void IslandContent::unload()
{
    m_root.reset();
    m_cards.reset();
}

} // namespace corvane::app
