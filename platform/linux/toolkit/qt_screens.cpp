#include "platform/linux/toolkit/qt_screens.h"

#include "platform/linux/toolkit/camera_notch.h"

#include <QFile>
#include <QGuiApplication>
#include <QMetaObject>
#include <QScreen>

#include <utility>
#include <vector>

namespace corvane::platform {

namespace {

/// Longer than the list of names of any machine.
constexpr qint64 maximumNames = 4096;

/// Empty if the file cannot be read.
QByteArray beginningOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(maximumNames) : QByteArray();
}

} // namespace

class QtScreens::Watcher final : public QObject
{
public:
    Watcher()
    {
        const auto *application = qGuiApp;
        connect(application, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
            watch(*screen);
            announce();
        });
        connect(application, &QGuiApplication::screenRemoved, this, &Watcher::announce);
        connect(application, &QGuiApplication::primaryScreenChanged, this, &Watcher::announce);
        const auto screens = QGuiApplication::screens();
        for (const QScreen *screen : screens) {
            watch(*screen);
        }
    }

    void add(std::function<void()> handler) { m_handlers.push_back(std::move(handler)); }

private:
    void watch(const QScreen &screen)
    {
        connect(&screen, &QScreen::geometryChanged, this, &Watcher::announce);
        connect(&screen, &QScreen::logicalDotsPerInchChanged, this, &Watcher::announce);
    }

    void announce()
    {
        if (std::exchange(m_announced, true)) {
            return;
        }
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_announced = false;
                const auto handlers = m_handlers;
                for (const auto &handler : handlers) {
                    handler();
                }
            },
            Qt::QueuedConnection);
    }

    std::vector<std::function<void()>> m_handlers;
    bool m_announced = false;
};

QtScreens::QtScreens(const QString &notch, const QString &machine)
    : m_notch(parseNotch(notch))
    , m_compatible(notch.isEmpty() ? beginningOf(machine) : QByteArray())
    , m_watcher(std::make_unique<Watcher>())
{}

QtScreens::~QtScreens() = default;

QList<Screen> QtScreens::all() const
{
    const ScreenCoordinates system = coordinates();
    QList<Screen> screens;
    const auto known = QGuiApplication::screens();
    for (const QScreen *screen : known) {
        screens.append(described(*screen, system));
    }
    return screens;
}

Screen QtScreens::described(const QScreen &screen, const ScreenCoordinates &system) const
{
    Screen description;
    description.name = screen.name();
    description.frame = system.globalFromQt(QRectF(screen.geometry()));
    if (const auto notch = notchOf(screen)) {
        addNotch(description, *notch);
    }
    return description;
}

std::optional<QSizeF> QtScreens::notchOf(const QScreen &screen) const
{
    if (&screen != QGuiApplication::primaryScreen()) {
        return std::nullopt;
    }
    if (m_notch || !isInternalConnector(screen.name())) {
        return m_notch;
    }
    return laptopNotch(m_compatible, screen.geometry().size());
}

std::optional<Screen> QtScreens::main() const
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    return primary == nullptr ? std::nullopt : std::optional(described(*primary, coordinates()));
}

void QtScreens::observeChanges(std::function<void()> handler)
{
    m_watcher->add(std::move(handler));
}

ScreenCoordinates QtScreens::coordinates() const
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    if (primary == nullptr) {
        return {};
    }
    QList<ScreenCoordinates::Display> displays;
    const auto known = QGuiApplication::screens();
    for (const QScreen *screen : known) {
        displays.append({screen->geometry(), screen->devicePixelRatio()});
    }
    return {primary->geometry(), displays};
}

} // namespace corvane::platform
