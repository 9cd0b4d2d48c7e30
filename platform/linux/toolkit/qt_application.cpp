#include "platform/linux/toolkit/qt_application.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace corvane::platform {

QtApplication::QtApplication()
{
    const auto neverRestart = [](QSessionManager &session) {
        session.setRestartHint(QSessionManager::RestartNever);
    };
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, qGuiApp, neverRestart);
    QObject::connect(qGuiApp, &QGuiApplication::saveStateRequest, qGuiApp, neverRestart);
}

void QtApplication::terminate()
{
    // Queued, so that the current event is handled completely before the event loop exits.
    QMetaObject::invokeMethod(QCoreApplication::instance(), "quit", Qt::QueuedConnection);
}

} // namespace corvane::platform
