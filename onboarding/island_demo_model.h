#pragma once

#include "look/motion/transaction.h"
#include "onboarding/onboarding.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

namespace corvane::onboarding {

/// The model of the miniature island, which cycles through three phases while it is shown:
/// collapsed, stretched and unfurled. Main thread.
class IslandDemoModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(corvane::onboarding::Onboarding *onboarding MEMBER m_onboarding REQUIRED FINAL)
    /// True while the page is visible. The phases change only then.
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged FINAL)
    /// True from the second phase on: as wide as the strip in the menu bar.
    Q_PROPERTY(bool stretched READ isStretched NOTIFY phaseChanged FINAL)
    /// True in the third phase: with its card.
    Q_PROPERTY(bool unfurled READ isUnfurled NOTIFY phaseChanged FINAL)
    Q_PROPERTY(QString caption READ caption NOTIFY phaseChanged FINAL)
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)

public:
    explicit IslandDemoModel(QObject *parent = nullptr);
    ~IslandDemoModel() override;

    [[nodiscard]] bool isShown() const { return m_shown; }
    void setShown(bool shown);
    [[nodiscard]] bool isStretched() const { return m_phase != 0; }
    [[nodiscard]] bool isUnfurled() const { return m_phase == 2; }
    [[nodiscard]] QString caption() const;
    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }

    void classBegin() override {}
    void componentComplete() override { followShown(); }

Q_SIGNALS:
    void shownChanged();
    void phaseChanged();

private:
    void followShown();
    void advance();

    Onboarding *m_onboarding = nullptr;
    bool m_shown = false;
    int m_phase = 0;
    look::Transaction m_transaction;
    std::shared_ptr<platform::WorkItem> m_timer;
};

} // namespace corvane::onboarding
