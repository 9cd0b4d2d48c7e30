#pragma once

#include "platform/authenticator.h"

#include <atomic>

namespace corvane::platform {

/// A context that can be used once after it has passed. Thread-safe.
class OneTimeContext final : public AuthenticationContext
{
public:
    [[nodiscard]] bool passed() const override { return m_passed; }

    /// Called by the authenticator when its evaluation has succeeded.
    void pass() { m_passed = true; }
    /// Called by the keychain: true on the first call after `pass()`, false on every later one.
    [[nodiscard]] bool use() { return m_passed.exchange(false); }

private:
    std::atomic<bool> m_passed = false;
};

} // namespace corvane::platform
