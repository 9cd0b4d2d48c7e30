#pragma once

#include <QString>

#include <cstdint>

namespace corvane::platform {

/// The operation for which the device's owner is asked to prove presence.
enum class PresenceReason : std::uint8_t { Unlock, Reveal, Send };

/// A prompt for the owner's presence.
struct PresencePrompt
{
    PresenceReason reason = PresenceReason::Unlock;
    /// Completes "Corvane is trying to …". Desktops with fixed prompt texts show their text for the
    /// reason instead.
    QString text;
};

/// Whether this device can authenticate its owner, and what is missing if not.
enum class PresenceMeans : std::uint8_t {
    Available,
    NoAgent,      ///< no program of the session shows the prompt
    NotInstalled, ///< the service is missing, or does not know or not permit this program's prompts
};

/// The result of a prompt.
enum class PresenceAnswer : std::uint8_t {
    Passed,
    Refused,     ///< by the owner, a time-out, or another failure
    NobodyToAsk, ///< this device cannot authenticate its owner; nothing was shown
};

} // namespace corvane::platform
