#pragma once

#include "platform/appearance.h"

namespace corvane::platform {

class BackgroundTasks;
class MainQueue;

/// Reads the desktop portal's settings (GNOME's and KDE's, which say whether animations are
/// wanted), or GNOME's own where no portal runs.
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
