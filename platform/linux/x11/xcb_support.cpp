#include "platform/linux/x11/xcb_support.h"

#include <QGuiApplication>

namespace corvane::platform::xcb {

bool isPlatform()
{
    return qGuiApp != nullptr && QGuiApplication::platformName() == QLatin1String("xcb");
}

Connection connectToDisplay(xcb_window_t &root)
{
    int number = 0;
    Connection connection(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return nullptr;
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; screen.rem > 1 && number > 0; --number) {
        xcb_screen_next(&screen);
    }
    root = screen.data->root;
    return connection;
}

} // namespace corvane::platform::xcb
