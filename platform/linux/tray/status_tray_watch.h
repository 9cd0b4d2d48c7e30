#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>

namespace corvane::platform {

/// Waits for the first place where the desktop shows status icons, without polling. Main thread.
///
/// Qt asks only once in a program's life whether there is a StatusNotifierItem host, and a question
/// without an answer stops it for many seconds: so this asks first.
class StatusTrayWatch final : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Calls `found` once, when a StatusNotifierItem host has answered, or when for a while there
    /// has been an XEmbed tray only.
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
    /// Desktops start the two kinds of trays in any order; the better one is waited for.
    QTimer m_xembedGrace;
    std::uint32_t m_traySelection = 0;
    int m_selectionEvent = -1;
};

} // namespace corvane::platform
