#pragma once

#include "platform/authenticator.h"

#include <atomic>

namespace corvane::platform {

/// A context that opens one thing after it has passed. May be used from any thread.
class OneTimeContext final : public AuthenticationContext
{
public:
    [[nodiscard]] bool passed() const override { return m_passed; }

    /// For the authenticator, when its evaluation has succeeded.
    void pass() { m_passed = true; }
    /// For the keychain: true the first time after passing, which uses the context up.
    [[nodiscard]] bool use() { return m_passed.exchange(false); }

private:
    std::atomic<bool> m_passed = false;
};

} // namespace corvane::platform
