#pragma once

#include "onboarding/onboarding.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

namespace corvane::onboarding {

/// The model of the install page: where the application is and whether it starts at login. Main
/// thread.
class InstallPageModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(corvane::onboarding::Onboarding *onboarding MEMBER m_onboarding REQUIRED FINAL)
    /// True while the page is visible. Its state is then polled.
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged FINAL)
    /// True if the application is in the applications folder, or is not a bundle.
    Q_PROPERTY(bool applicationsDone READ applicationsDone NOTIFY changed FINAL)
    Q_PROPERTY(QString applicationsDetail READ applicationsDetail NOTIFY changed FINAL)
    /// True if the program starts at login.
    Q_PROPERTY(bool loginDone READ loginDone NOTIFY changed FINAL)
    Q_PROPERTY(QString loginDetail READ loginDetail NOTIFY changed FINAL)
    /// True if the application can be moved to the applications folder.
    Q_PROPERTY(bool movable READ isMovable NOTIFY changed FINAL)
    Q_PROPERTY(QString moveLabel READ moveLabel NOTIFY changed FINAL)

public:
    explicit InstallPageModel(QObject *parent = nullptr);
    ~InstallPageModel() override;

    /// Moves the application and restarts it. Failures are not reported.
    Q_INVOKABLE void move();

    [[nodiscard]] bool isShown() const { return m_shown; }
    void setShown(bool shown);
    [[nodiscard]] bool applicationsDone() const { return m_inApps || !m_isBundle; }
    [[nodiscard]] QString applicationsDetail() const;
    [[nodiscard]] bool loginDone() const { return m_login; }
    [[nodiscard]] QString loginDetail() const;
    [[nodiscard]] bool isMovable() const { return !applicationsDone(); }
    [[nodiscard]] QString moveLabel() const;

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void shownChanged();
    void changed();

private:
    void read();
    void followShown();
    void setMoving(bool moving);

    Onboarding *m_onboarding = nullptr;
    bool m_shown = false;
    bool m_isBundle = false;
    bool m_inApps = false;
    bool m_login = false;
    bool m_moving = false;
    std::shared_ptr<platform::WorkItem> m_poll;
};

} // namespace corvane::onboarding
