#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane::platform {

/// Bytes that must not leak: they lie in their own guarded, locked pages, are wiped on release, can
/// be moved but not copied by accident, and are compared in constant time.
class SecretBytes
{
public:
    /// No bytes.
    SecretBytes() noexcept = default;
    /// `size` zero bytes. Throws std::bad_alloc when the guarded memory is used up.
    explicit SecretBytes(std::size_t size);
    SecretBytes(SecretBytes &&other) noexcept;
    SecretBytes &operator=(SecretBytes &&other) noexcept;
    SecretBytes(const SecretBytes &) = delete;
    SecretBytes &operator=(const SecretBytes &) = delete;
    ~SecretBytes();

    /// A guarded copy of `bytes`; wiping the original is the caller's business.
    [[nodiscard]] static SecretBytes copyOf(std::span<const std::uint8_t> bytes);
    /// A second guarded copy, said aloud.
    [[nodiscard]] SecretBytes clone() const { return copyOf(bytes()); }

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_size == 0; }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return {m_data, m_size}; }
    [[nodiscard]] std::span<std::uint8_t> bytes() noexcept { return {m_data, m_size}; }

    /// Compares in a time that depends on the size alone.
    [[nodiscard]] bool operator==(const SecretBytes &other) const noexcept;

private:
    std::uint8_t *m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace corvane::platform
