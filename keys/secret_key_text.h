#pragma once

#include "platform/secret_bytes.h"
#include "platform/signing_keys.h"

#include <QStringView>

#include <optional>

namespace corvane::keys {

/// Parses the seed in a pasted secret key: Base58, or a JSON array of integers, of each of which
/// the low 8 bits are used. Of 64 bytes the first 32 are the seed and the rest is ignored; 32 bytes
/// are the seed itself. Ignores blanks and line breaks at both ends. Empty for any other text.
///
/// `text` should be in guarded memory; no part of it is copied to unprotected memory.
[[nodiscard]] std::optional<platform::SecretBytes> seedFromText(QStringView text);

/// The 64-byte secret key (seed, public key) in Base58 (ASCII), as shown in a backup.
[[nodiscard]] platform::SecretBytes backupText(const platform::SecretBytes &seed,
                                               const platform::PublicKey &publicKey);

} // namespace corvane::keys
