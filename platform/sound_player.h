#pragma once

namespace corvane::platform {

/// The short sounds that accompany a transfer.
enum class Sound {
    Pop,   ///< the transfer starts
    Glass, ///< the transfer succeeded
    Basso, ///< the transfer failed
};

/// Plays the desktop's sounds. Main thread.
class SoundPlayer
{
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default;

    /// Returns immediately; sounds may overlap. Does nothing if the sound cannot be played.
    virtual void play(Sound sound) = 0;
};

} // namespace corvane::platform
