#include "app/qt_environment.h"

#include <QtGlobal>

namespace corvane::app {

void QtEnvironment::prepare()
{
    // Wayland has no way yet to place the island; its X server has. Some sessions set the platform
    // for every program.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if ((platform.isEmpty() || platform.startsWith("wayland")) &&
        !qEnvironmentVariableIsEmpty("DISPLAY")) {
        set("QT_QPA_PLATFORM", "xcb");
    }
    // A frame at rest changes some hundred pixels. Shared memory costs each frame a round trip to
    // the X server, and collecting updates for 5 ms costs it a timer: together three of the four
    // wake-ups of a breath.
    for (const auto &[variable, value] :
         {std::pair("QT_XCB_NO_MITSHM", "1"), std::pair("QT_QPA_UPDATE_IDLE_TIME", "0")}) {
        if (!qEnvironmentVariableIsSet(variable)) {
            set(variable, value);
        }
    }
}

void QtEnvironment::restore()
{
    for (const auto &[variable, value] : std::exchange(m_before, {})) {
        if (value) {
            qputenv(variable, *value);
        } else {
            qunsetenv(variable);
        }
    }
}

void QtEnvironment::set(const char *variable, const QByteArray &value)
{
    m_before.emplace_back(variable, qEnvironmentVariableIsSet(variable)
                                        ? std::optional(qgetenv(variable))
                                        : std::nullopt);
    qputenv(variable, value);
}

} // namespace corvane::app
