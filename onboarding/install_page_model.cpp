#include "onboarding/install_page_model.h"

#include "onboarding/applications_folder.h"

#include <chrono>

namespace corvane::onboarding {

namespace {

/// The user may change the login item in the desktop's settings while the page is visible; each
/// poll reads one small file.
constexpr std::chrono::seconds readInterval{2};

} // namespace

InstallPageModel::InstallPageModel(QObject *parent)
    : QObject(parent)
{}

InstallPageModel::~InstallPageModel()
{
    if (m_poll) {
        m_poll->cancel();
    }
}

void InstallPageModel::componentComplete()
{
    read();
    followShown();
}

void InstallPageModel::setShown(bool shown)
{
    if (m_shown == shown) {
        return;
    }
    m_shown = shown;
    followShown();
    Q_EMIT shownChanged();
}

void InstallPageModel::followShown()
{
    if (m_poll) {
        m_poll->cancel();
        m_poll.reset();
    }
    if (m_shown && m_onboarding != nullptr) {
        read();
        m_poll = m_onboarding->services().queue.every(readInterval, [this] { read(); });
    }
}

void InstallPageModel::read()
{
    const OnboardingServices &services = m_onboarding->services();
    const QString path = services.bundle.path();
    m_isBundle = isApplicationBundle(path);
    m_inApps = isInApplications(path);
    m_login = services.loginItem.isEnabled();
    Q_EMIT changed();
}

void InstallPageModel::move()
{
    setMoving(true);
    if (!m_onboarding->moveToApplications()) {
        setMoving(false);
    }
}

void InstallPageModel::setMoving(bool moving)
{
    m_moving = moving;
    Q_EMIT changed();
}

QString InstallPageModel::applicationsDetail() const
{
    if (m_inApps) {
        return QStringLiteral("installed");
    }
    return m_isBundle ? QStringLiteral("currently running from the download location")
                      : QStringLiteral("dev build — install with the installer script");
}

QString InstallPageModel::loginDetail() const
{
    return m_login ? QStringLiteral("registered — it's there after every restart")
                   : QStringLiteral("registers itself automatically once installed");
}

QString InstallPageModel::moveLabel() const
{
    return m_moving ? QStringLiteral("MOVING…") : QStringLiteral("MOVE TO APPLICATIONS");
}

} // namespace corvane::onboarding
