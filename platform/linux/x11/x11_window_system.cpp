#include "platform/linux/x11/x11_window_system.h"

namespace corvane::platform {

std::vector<std::pair<QByteArray, QByteArray>> X11WindowSystem::qtEnvironment()
{
    std::vector<std::pair<QByteArray, QByteArray>> variables;
    // Wayland does not let a client place the island, but Xwayland does. Some sessions set the
    // platform for every program, so it is overridden here.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if ((platform.isEmpty() || platform.startsWith("wayland")) &&
        !qEnvironmentVariableIsEmpty("DISPLAY")) {
        variables.emplace_back("QT_QPA_PLATFORM", "xcb");
    }
    // A frame at rest changes only a few hundred pixels. For each frame, shared memory costs a
    // round trip to the X server, and collecting updates for 5 ms costs a timer: together three of
    // the four wake-ups per step of the breathing mark.
    for (const auto &[variable, value] :
         {std::pair("QT_XCB_NO_MITSHM", "1"), std::pair("QT_QPA_UPDATE_IDLE_TIME", "0")}) {
        if (!qEnvironmentVariableIsSet(variable)) {
            variables.emplace_back(variable, value);
        }
    }
    return variables;
}

X11WindowSystem::X11WindowSystem(const QtScreens &screens, WhileCovered whileCovered)
    : m_pointer(screens)
    , m_panels(screens, whileCovered)
    , m_windows(screens)
{}

} // namespace corvane::platform
