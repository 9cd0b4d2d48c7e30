#pragma once

#include "platform/pointer_monitor.h"

#include <chrono>
#include <memory>

namespace corvane::platform {

class QtScreens;

/// Follows the pointer by XInput2 raw motion, which reports movements over every window.
///
/// A series of movements causes one call at its start and one every `mergeInterval` while it
/// continues; the last call follows the last movement. `location` of a resting pointer needs no
/// round trip: each call uses the reply to the previous query and sends the next one. It therefore
/// reports the position of a pointer that a program has moved without its device one call late.
class XcbPointerMonitor final : public PointerMonitor
{
public:
    /// Movements within this time are reported once.
    static constexpr std::chrono::milliseconds mergeInterval{8};

    /// `screens` must outlive the monitor.
    explicit XcbPointerMonitor(const QtScreens &screens);
    ~XcbPointerMonitor() override;

    /// Null without X11 and XInput 2.1.
    std::unique_ptr<Token> addGlobalMonitor(Handler handler) override;
    /// Always null: raw motion is not bound to a window.
    std::unique_ptr<Token> addLocalMonitor(Handler handler) override;
    [[nodiscard]] std::optional<QPointF> location() const override;

private:
    class MotionWatch;
    class PointerQuery;
    class Subscription;

    const QtScreens &m_screens;
    std::shared_ptr<MotionWatch> m_watch;
    std::unique_ptr<PointerQuery> m_query;
};

} // namespace corvane::platform
