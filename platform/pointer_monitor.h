#pragma once

#include <QPointF>

#include <functional>
#include <memory>
#include <optional>

namespace corvane::platform {

/// Watches the pointer wherever it is, also over other programs' windows.
class PointerMonitor
{
public:
    /// Keeps a subscription alive; destroying it ends the subscription.
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
    /// program's windows (an adapter may include them). May be called from any thread; bursts of
    /// movements may be merged into one call. Null when the desktop refuses.
    virtual std::unique_ptr<Token> addGlobalMonitor(Handler handler) = 0;

    /// The same for movements over this program's own windows. Null when the global monitor sees
    /// those already.
    virtual std::unique_ptr<Token> addLocalMonitor(Handler handler) = 0;

    /// Where the pointer is now, in the coordinates of `Screen`; none when there is no pointer on
    /// any screen. Main thread.
    [[nodiscard]] virtual std::optional<QPointF> location() const = 0;
};

} // namespace corvane::platform
