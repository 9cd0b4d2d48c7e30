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
    /// `background` must outlive the player; connecting to a sound server may take its time.
    explicit CanberraSoundPlayer(BackgroundTasks &background);
    ~CanberraSoundPlayer() override;

    void play(Sound sound) override;

private:
    BackgroundTasks &m_background;
    /// Made with the first sound; sounds that are still playing keep it.
    std::shared_ptr<ca_context> m_context;
};

} // namespace corvane::platform
