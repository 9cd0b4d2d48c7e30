#include "onboarding/island_demo_model.h"

#include <chrono>

namespace corvane::onboarding {

namespace {

constexpr std::chrono::milliseconds phaseDuration{1500};
constexpr int phases = 3;

} // namespace

IslandDemoModel::IslandDemoModel(QObject *parent)
    : QObject(parent)
{}

IslandDemoModel::~IslandDemoModel()
{
    if (m_timer) {
        m_timer->cancel();
    }
}

void IslandDemoModel::setShown(bool shown)
{
    if (m_shown == shown) {
        return;
    }
    m_shown = shown;
    followShown();
    Q_EMIT shownChanged();
}

void IslandDemoModel::followShown()
{
    if (m_timer) {
        m_timer->cancel();
        m_timer.reset();
    }
    if (m_shown && m_onboarding != nullptr) {
        m_timer = m_onboarding->services().queue.every(phaseDuration, [this] { advance(); });
    }
}

void IslandDemoModel::advance()
{
    m_transaction.run(look::Animation::spring(0.42, 0.88), [&] {
        m_phase = (m_phase + 1) % phases;
        Q_EMIT phaseChanged();
    });
}

QString IslandDemoModel::caption() const
{
    switch (m_phase) {
    case 0:
        return QStringLiteral("it rests in the notch — a quiet green pulse");
    case 1:
        return QStringLiteral("hover: it stretches along the menu bar");
    default:
        return QStringLiteral("…then unfurls. balance, send, receive — right there.");
    }
}

} // namespace corvane::onboarding
