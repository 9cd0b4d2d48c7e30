#pragma once

#include "platform/appearance.h"

namespace corvane::platform {

class BackgroundTasks;
class MainQueue;

/// Reads the settings for animations and contrast from the desktop portal, or from GNOME's own
/// settings if no portal is running.
class DesktopAppearance final : public Appearance
{
public:
    /// Both must outlive this object.
    DesktopAppearance(BackgroundTasks &background, MainQueue &queue);

    void read(Reply reply) override;

private:
    BackgroundTasks &m_background;
    MainQueue &m_queue;
};

} // namespace corvane::platform
