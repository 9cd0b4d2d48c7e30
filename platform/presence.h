#pragma once

#include <QString>

#include <cstdint>

namespace corvane::platform {

/// What the device's owner is asked to prove presence for.
enum class PresenceReason : std::uint8_t { Unlock, Reveal, Send };

/// A question for the owner's presence.
struct PresencePrompt
{
    PresenceReason reason = PresenceReason::Unlock;
    /// Completes "Corvane is trying to …". A desktop whose prompts have fixed texts shows the one
    /// that it has for the reason.
    QString text;
};

/// How such a question has ended.
enum class PresenceAnswer : std::uint8_t {
    Passed,
    Refused,     ///< by the owner, by a time-out, or by what came between them
    NobodyToAsk, ///< this device has no means of asking its owner, and nothing was shown
};

} // namespace corvane::platform
