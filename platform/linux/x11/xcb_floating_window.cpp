#include "platform/linux/x11/xcb_floating_window.h"

#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/window_region.h"
#include "platform/linux/x11/xcb_support.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStyleHints>
#include <QSurfaceFormat>

#include <optional>
#include <string_view>
#include <vector>

namespace corvane::platform {

namespace {

/// The property with the areas of a window behind which a compositing manager should blur; a list
/// of rectangles.
constexpr std::string_view blurProperty = "_KDE_NET_WM_BLUR_BEHIND_REGION";

/// An item below the content. It moves the window with the presses that the content does not
/// accept.
class DragSurface final : public QQuickItem
{
public:
    explicit DragSurface(QQuickItem *parent)
        : QQuickItem(parent)
    {
        setAcceptedMouseButtons(Qt::LeftButton);
    }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        m_pressed = event->globalPosition();
        m_origin = window()->position();
        m_motion = Motion::None;
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const QPointF way = event->globalPosition() - m_pressed;
        if (m_motion == Motion::None &&
            way.manhattanLength() >= QGuiApplication::styleHints()->startDragDistance()) {
            // The window manager handles edges and workspaces; without one, the window is moved
            // here.
            m_motion = window()->startSystemMove() ? Motion::Managed : Motion::Own;
        }
        if (m_motion == Motion::Own) {
            window()->setPosition(m_origin + way.toPoint());
        }
    }

private:
    enum class Motion { None, Managed, Own };

    QPointF m_pressed;
    QPoint m_origin;
    Motion m_motion = Motion::None;
};

void blurBehind(xcb_connection_t *connection, xcb_window_t window, const QList<QRect> &region)
{
    const auto question = xcb_intern_atom(
        connection, 0, static_cast<std::uint16_t>(blurProperty.size()), blurProperty.data());
    const xcb::Owned<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, question, nullptr));
    if (!atom) {
        return;
    }
    std::vector<std::uint32_t> values;
    for (const QRect &part : region) {
        for (const int value : {part.x(), part.y(), part.width(), part.height()}) {
            values.push_back(static_cast<std::uint32_t>(value));
        }
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom->atom, XCB_ATOM_CARDINAL,
                        32, static_cast<std::uint32_t>(values.size()), values.data());
}

} // namespace

/// Sets the window's X shape whenever a native window is created or the screen changes.
class XcbFloatingWindow::Window final : public QQuickWindow
{
public:
    Window() { connect(this, &QWindow::screenChanged, this, &Window::applyShape); }

    /// Shows the window at its last position, which is lost with the native window.
    void showInPlace()
    {
        if (!isVisible() && m_place) {
            setPosition(*m_place);
        }
        show();
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        m_place = position();
        QQuickWindow::closeEvent(event);
    }

    bool event(QEvent *event) override
    {
        const bool handled = QQuickWindow::event(event);
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceCreated) {
            applyShape();
        }
        return handled;
    }

private:
    void applyShape()
    {
        const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (x11 == nullptr || handle() == nullptr) {
            return;
        }
        const double scale = devicePixelRatio();
        const QRect pixels({0, 0}, (QSizeF(size()) * scale).toSize());
        const auto region = roundedRegion(pixels, cornerRadius * scale, RoundCorners::All);
        const auto id = static_cast<xcb_window_t>(winId());
        xcb::setShape(x11->connection(), id, XCB_SHAPE_SK_BOUNDING, region);
        blurBehind(x11->connection(), id, region);
        xcb_flush(x11->connection());
    }

    std::optional<QPoint> m_place;
};

XcbFloatingWindow::XcbFloatingWindow(const QString &title, const QRect &geometry,
                                     std::unique_ptr<QQuickItem> content)
    : m_window(std::make_unique<Window>())
    , m_content(std::move(content))
{
    QSurfaceFormat format = m_window->requestedFormat();
    format.setAlphaBufferSize(8);
    m_window->setFormat(format);
    m_window->setColor(Qt::transparent);
    m_window->setTitle(title);
    m_window->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_window->setMinimumSize(geometry.size());
    m_window->setMaximumSize(geometry.size());
    m_window->setGeometry(geometry);

    QQuickItem *root = m_window->contentItem();
    (new DragSurface(root))->setSize(geometry.size());
    if (m_content) {
        m_content->setParentItem(root);
        m_content->setSize(geometry.size());
    }
}

XcbFloatingWindow::~XcbFloatingWindow() = default;

void XcbFloatingWindow::show()
{
    m_window->showInPlace();
    m_window->raise();
    m_window->requestActivate();
}

void XcbFloatingWindow::hide()
{
    m_window->close();
}

QQuickWindow &XcbFloatingWindow::window()
{
    return *m_window;
}

XcbFloatingWindowFactory::XcbFloatingWindowFactory(const QtScreens &screens)
    : m_screens(screens)
{}

std::unique_ptr<FloatingWindow>
XcbFloatingWindowFactory::makeWindow(const QString &title, const QRectF &frame,
                                     std::unique_ptr<QQuickItem> content)
{
    return std::make_unique<XcbFloatingWindow>(
        title, m_screens.coordinates().qtFromGlobal(frame).toRect(), std::move(content));
}

} // namespace corvane::platform
