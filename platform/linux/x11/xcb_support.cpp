#include "platform/linux/x11/xcb_support.h"

#include <QGuiApplication>

#include <vector>

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

void setShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind,
              const QList<QRect> &region)
{
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(static_cast<std::size_t>(region.size()));
    for (const QRect &part : region) {
        rectangles.push_back(
            {static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
             static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height())});
    }
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED, window, 0,
                         0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

} // namespace corvane::platform::xcb
