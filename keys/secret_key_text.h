#pragma once

#include "platform/secret_bytes.h"
#include "platform/signing_keys.h"

#include <QStringView>

#include <optional>

namespace corvane::keys {

/// The seed in a secret key that somebody pasted: Base58, or a JSON array of integers of which each
/// gives its low 8 bits. Of 64 bytes the first 32 are the seed and the rest is ignored; 32 bytes
/// are the seed itself. Blanks and line breaks at both ends are forgiven; none for anything else.
///
/// `text` should lie in guarded memory; no part of it is copied outside of such.
[[nodiscard]] std::optional<platform::SecretBytes> seedFromText(QStringView text);

/// The 64-byte secret key, seed then public key, in Base58 (ASCII): what a backup shows.
[[nodiscard]] platform::SecretBytes backupText(const platform::SecretBytes &seed,
                                               const platform::PublicKey &publicKey);

} // namespace corvane::keys
