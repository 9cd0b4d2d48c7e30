#include "platform/linux/qt_application.h"

#include <QCoreApplication>

namespace corvane::platform {

void QtApplication::terminate()
{
    // What still happens in the running event must not happen after the end.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
}

} // namespace corvane::platform
