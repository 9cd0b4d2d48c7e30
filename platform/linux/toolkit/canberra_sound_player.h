#pragma once

#include "platform/sound_player.h"

#include <memory>

struct ca_context;

namespace corvane::platform {

class BackgroundTasks;

/// Plays the sounds of the desktop's sound theme with libcanberra.
class CanberraSoundPlayer final : public SoundPlayer
{
public:
    /// `background` must outlive the player. It is used because connecting to a sound server may
    /// block.
    explicit CanberraSoundPlayer(BackgroundTasks &background);
    ~CanberraSoundPlayer() override;

    void play(Sound sound) override;

private:
    BackgroundTasks &m_background;
    /// Created for the first sound; shared with sounds that are still playing.
    std::shared_ptr<ca_context> m_context;
};

} // namespace corvane::platform
