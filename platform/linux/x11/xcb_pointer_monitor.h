#pragma once

#include "platform/pointer_monitor.h"

#include <chrono>
#include <memory>

namespace corvane::platform {

class QtScreens;

/// Follows the pointer by XInput2 raw motion, which tells of movements over every window.
///
/// A burst of movements makes one call at its beginning and one every `mergeInterval` while it
/// lasts, the last of which comes after the last movement. Asking where a resting pointer is costs
/// no round trip: each call takes the answer to the one before and sends the next question. A
/// pointer that a program moves without its device is therefore noticed one call late.
class XcbPointerMonitor final : public PointerMonitor
{
public:
    /// Motion within this time is told once.
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
