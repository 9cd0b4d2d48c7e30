#pragma once

#include <QPointF>

#include <functional>
#include <memory>
#include <optional>

namespace corvane::platform {

/// Watches the pointer anywhere on the desktop, including over other programs' windows.
class PointerMonitor
{
public:
    /// Owns a subscription; destroying it cancels the subscription.
    class Token
    {
    public:
        Token() = default;
        Token(const Token &) = delete;
        Token &operator=(const Token &) = delete;
        virtual ~Token() = default;
    };
    using Handler = std::function<void()>;

    PointerMonitor() = default;
    PointerMonitor(const PointerMonitor &) = delete;
    PointerMonitor &operator=(const PointerMonitor &) = delete;
    virtual ~PointerMonitor() = default;

    /// Calls `handler` when the pointer moves, with or without a button held, outside this
    /// program's windows (an adapter may include them). May be called from any thread; several
    /// movements may be merged into one call. Null if the desktop refuses.
    virtual std::unique_ptr<Token> addGlobalMonitor(Handler handler) = 0;

    /// The same for movements over this program's own windows. Null if the global monitor already
    /// reports those.
    virtual std::unique_ptr<Token> addLocalMonitor(Handler handler) = 0;

    /// The current pointer position in the coordinates of `Screen`; empty if no screen has a
    /// pointer. Main thread.
    [[nodiscard]] virtual std::optional<QPointF> location() const = 0;
};

} // namespace corvane::platform
