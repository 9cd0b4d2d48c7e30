#include "platform/linux/x11/xcb_island_panel.h"

#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/window_region.h"
#include "platform/linux/x11/xcb_fullscreen_watch.h"
#include "platform/linux/x11/xcb_panel_window.h"
#include "platform/linux/x11/xcb_support.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QQuickItem>
#include <QSurfaceFormat>

#include <cmath>
#include <utility>

namespace corvane::platform {

namespace {

/// The smallest rectangle of whole points, as windows require, that covers `rectangle`. Keeps the
/// top edge.
QRect windowGeometry(const QRectF &rectangle)
{
    return {qRound(rectangle.x()), qRound(rectangle.y()),
            static_cast<int>(std::ceil(rectangle.width())),
            static_cast<int>(std::ceil(rectangle.height()))};
}

} // namespace

/// Tells the panel's observer about keyboard focus and about what is pressed.
class XcbIslandPanel::Input final : public QObject
{
public:
    explicit Input(XcbIslandPanel &panel)
        : m_panel(panel)
    {
        panel.m_window.installEventFilter(this);
        connect(&panel.m_window, &QWindow::activeChanged, this, [this] {
            if (m_panel.m_observer.focusChanged) {
                m_panel.m_observer.focusChanged(m_panel.m_window.isActive());
            }
        });
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        const KeyboardObserver &observer = m_panel.m_observer;
        if (event->type() == QEvent::KeyPress && observer.keyPressed) {
            observer.keyPressed();
        } else if (event->type() == QEvent::MouseButtonPress && observer.buttonPressed) {
            observer.buttonPressed();
        }
        return false;
    }

private:
    XcbIslandPanel &m_panel;
};

/// Keeps the X11 part in sync with Qt's native window, which may be destroyed and created again.
class XcbIslandPanel::Desktop final : public QObject
{
public:
    explicit Desktop(XcbIslandPanel &panel)
        : m_panel(panel)
    {
        panel.m_window.installEventFilter(this);
    }

    [[nodiscard]] XcbPanelWindow *window() { return m_window ? &*m_window : nullptr; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress && m_window) {
            // The pressed control may take keyboard focus.
            m_window->rememberFocus();
        }
        if (event->type() != QEvent::PlatformSurface) {
            return false;
        }
        const auto *change = static_cast<const QPlatformSurfaceEvent *>(event);
        if (change->surfaceEventType() == QPlatformSurfaceEvent::SurfaceCreated) {
            adopt();
        } else {
            m_window.reset();
        }
        return false;
    }

private:
    void adopt()
    {
        const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (x11 == nullptr) {
            return;
        }
        m_window.emplace(x11->connection(), static_cast<std::uint32_t>(m_panel.m_window.winId()),
                         XcbPanelWindow::Observer{[this] { m_panel.applyShape(); },
                                                  [this] { m_panel.restack(); }});
        m_panel.applyShape();
    }

    XcbIslandPanel &m_panel;
    std::optional<XcbPanelWindow> m_window;
};

XcbIslandPanel::XcbIslandPanel(const QtScreens &screens, const QRectF &frame,
                               WhileCovered whileCovered)
    : m_screens(screens)
    , m_input(std::make_unique<Input>(*this))
{
    QSurfaceFormat format = m_window.requestedFormat();
    format.setAlphaBufferSize(8);
    m_window.setFormat(format);
    m_window.setColor(Qt::transparent);
    m_window.setTitle(QStringLiteral("Corvane"));
    m_window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                      Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint);
    if (xcb::isPlatform()) {
        m_desktop = std::make_unique<Desktop>(*this);
    } else {
        m_window.setFlag(Qt::WindowTransparentForInput);
    }
    QObject::connect(&m_window, &QWindow::widthChanged, &m_window, [this] { fitContent(); });
    QObject::connect(&m_window, &QWindow::heightChanged, &m_window, [this] { fitContent(); });
    // Another display may have another scale factor.
    QObject::connect(&m_window, &QWindow::screenChanged, &m_window, [this] { applyShape(); });
    if (m_desktop && whileCovered == WhileCovered::Hide) {
        m_fullscreen = XcbFullscreenWatch::open([this] { comeOrGo(); });
        QObject::connect(
            &m_window, &QQuickWindow::frameSwapped, &m_window,
            [this] {
                m_drawn = true;
                comeOrGo();
            },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
    setFrame(frame);
}

XcbIslandPanel::~XcbIslandPanel()
{
    m_fullscreen.reset();
    // The window outlives the members declared after it, and emits signals in its destructor.
    m_input.reset();
    if (m_desktop) {
        m_window.removeEventFilter(m_desktop.get());
    }
    if (m_content) {
        m_content->setParentItem(nullptr);
    }
    QObject::disconnect(&m_window, nullptr, &m_window, nullptr);
}

void XcbIslandPanel::setFrame(const QRectF &frame)
{
    m_window.setGeometry(windowGeometry(m_screens.coordinates().qtFromGlobal(frame)));
    comeOrGo();
}

void XcbIslandPanel::setLevel(Level level)
{
    if (level == m_level) {
        return;
    }
    m_level = level;
    comeOrGo();
    XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr;
    if (window == nullptr) {
        return;
    }
    window->followUnmanaged(level == Level::Active);
    if (level == Level::Active) {
        restack();
    } else {
        window->lowerFromTop();
    }
}

void XcbIslandPanel::setClickThrough(bool on)
{
    if (on == m_clickThrough) {
        return;
    }
    m_clickThrough = on;
    if (!m_desktop) {
        m_window.setFlag(Qt::WindowTransparentForInput, on);
    }
    applyShape();
}

void XcbIslandPanel::setContent(QQuickItem *content)
{
    if (m_content) {
        m_content->setParentItem(nullptr);
    }
    m_content = content;
    if (content != nullptr) {
        content->setParentItem(m_window.contentItem());
        fitContent();
    }
}

void XcbIslandPanel::fitContent()
{
    if (m_content) {
        m_content->setPosition({0, 0});
        m_content->setSize(m_window.size());
    }
}

void XcbIslandPanel::setContentOutline(const QRectF &outline, double bottomRadius)
{
    m_outline = outline;
    m_bottomRadius = bottomRadius;
    applyShape();
}

void XcbIslandPanel::applyShape()
{
    XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr;
    if (window == nullptr) {
        return;
    }
    const double scale = m_window.devicePixelRatio();
    const QRect area = pixelsOf(m_outline, scale);
    const bool clickable = !m_clickThrough && !area.isEmpty();
    window->setInputRegion(clickable ? QList<QRect>{area} : QList<QRect>{});
    if (window->isComposited()) {
        window->setBoundingRegion(std::nullopt);
    } else {
        window->setBoundingRegion(roundedRegion(area, m_bottomRadius * scale, RoundCorners::Lower));
    }
}

void XcbIslandPanel::show()
{
    m_window.show();
    if (XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr) {
        window->raiseToTop(displayPixels());
    } else {
        m_window.raise();
    }
}

void XcbIslandPanel::comeOrGo()
{
    const bool away = m_fullscreen && m_drawn && m_level == Level::Resting &&
                      m_fullscreen->covers(displayPixels());
    if (std::exchange(m_away, away) == away) {
        return;
    }
    m_window.setVisible(!away);
    restack();
}

QRect XcbIslandPanel::displayPixels() const
{
    // Qt scales a screen's size, but not its position.
    const QRect geometry = m_window.screen()->geometry();
    return {geometry.topLeft(), (QSizeF(geometry.size()) * m_window.devicePixelRatio()).toSize()};
}

void XcbIslandPanel::restack()
{
    XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr;
    if (window == nullptr || !m_window.isVisible()) {
        return;
    }
    if (m_level == Level::Active) {
        window->raiseToTop(displayPixels());
    } else {
        window->raiseAboveManaged();
    }
}

void XcbIslandPanel::activate()
{
    if (XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr) {
        window->rememberFocus();
        window->takeFocus();
    } else {
        m_window.requestActivate();
    }
}

void XcbIslandPanel::observeKeyboard(KeyboardObserver observer)
{
    m_observer = std::move(observer);
}

void XcbIslandPanel::deactivate()
{
    if (XcbPanelWindow *window = m_desktop ? m_desktop->window() : nullptr) {
        window->returnFocus();
    }
}

XcbIslandPanelFactory::XcbIslandPanelFactory(const QtScreens &screens, WhileCovered whileCovered)
    : m_screens(screens)
    , m_whileCovered(whileCovered)
{}

std::unique_ptr<IslandPanel> XcbIslandPanelFactory::makePanel(const QRectF &frame)
{
    return std::make_unique<XcbIslandPanel>(m_screens, frame, m_whileCovered);
}

} // namespace corvane::platform
