#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>

namespace corvane::platform {

/// Waits for the desktop's first status area, without polling. Main thread.
///
/// Qt checks only once per process whether a StatusNotifierItem host exists, and blocks for many
/// seconds if the host does not answer. This class therefore checks first, without blocking.
class StatusTrayWatch final : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Calls `found` once, as soon as a StatusNotifierItem host has answered, or if only an XEmbed
    /// tray has been present for some time.
    explicit StatusTrayWatch(std::function<void()> found);
    ~StatusTrayWatch() override;

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private Q_SLOTS:
    void askForHost();

private:
    void watchBus();
    void watchDisplay();
    void finish();

    std::function<void()> m_found;
    QDBusServiceWatcher m_watcherService;
    /// Desktops may start the XEmbed tray first; this leaves time for a StatusNotifierItem host.
    QTimer m_xembedGrace;
    std::uint32_t m_traySelection = 0;
    int m_selectionEvent = -1;
};

} // namespace corvane::platform
