#pragma once

namespace corvane::platform {

/// The short sounds that mark the moments of a transfer.
enum class Sound {
    Pop,   ///< it sets out
    Glass, ///< it has arrived
    Basso, ///< it has failed
};

/// Plays the desktop's sounds. Main thread; returns at once and never fails visibly: where there is
/// no sound there is silence.
class SoundPlayer
{
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default;

    /// Sounds may overlap.
    virtual void play(Sound sound) = 0;
};

} // namespace corvane::platform
