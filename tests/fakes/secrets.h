#pragma once

#include "platform/secret_bytes.h"

#include <QString>

#include <algorithm>

namespace corvane::tests {

/// Converts ASCII bytes to a string.
[[nodiscard]] inline QString textOf(const platform::SecretBytes &text)
{
    return QString::fromLatin1(reinterpret_cast<const char *>(text.bytes().data()),
                               static_cast<qsizetype>(text.size()));
}

/// A seed that consists of 32 times the same byte.
[[nodiscard]] inline platform::SecretBytes seedOf(std::uint8_t byte)
{
    platform::SecretBytes seed(32);
    std::ranges::fill(seed.bytes(), byte);
    return seed;
}

} // namespace corvane::tests
