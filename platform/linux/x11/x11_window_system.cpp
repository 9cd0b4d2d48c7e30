#include "platform/linux/x11/x11_window_system.h"

namespace corvane::platform {

std::vector<std::pair<QByteArray, QByteArray>> X11WindowSystem::qtEnvironment()
{
    std::vector<std::pair<QByteArray, QByteArray>> variables;
    // Wayland has no way yet to place the island; its X server has. Some sessions set the platform
    // for every program.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if ((platform.isEmpty() || platform.startsWith("wayland")) &&
        !qEnvironmentVariableIsEmpty("DISPLAY")) {
        variables.emplace_back("QT_QPA_PLATFORM", "xcb");
    }
    // A frame at rest changes some hundred pixels. Shared memory costs each frame a round trip to
    // the X server, and collecting updates for 5 ms costs it a timer: together three of the four
    // wake-ups of a breath.
    for (const auto &[variable, value] :
         {std::pair("QT_XCB_NO_MITSHM", "1"), std::pair("QT_QPA_UPDATE_IDLE_TIME", "0")}) {
        if (!qEnvironmentVariableIsSet(variable)) {
            variables.emplace_back(variable, value);
        }
    }
    return variables;
}

X11WindowSystem::X11WindowSystem(const QtScreens &screens)
    : m_pointer(screens)
    , m_panels(screens)
    , m_windows(screens)
{}

} // namespace corvane::platform
