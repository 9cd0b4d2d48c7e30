#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane::platform {

/// Bytes that must not leak: stored in guarded, locked pages of their own, wiped on release,
/// movable but not implicitly copyable, compared in constant time.
class SecretBytes
{
public:
    /// No bytes.
    SecretBytes() noexcept = default;
    /// `size` zero bytes. Throws std::bad_alloc if no guarded memory is left.
    explicit SecretBytes(std::size_t size);
    SecretBytes(SecretBytes &&other) noexcept;
    SecretBytes &operator=(SecretBytes &&other) noexcept;
    SecretBytes(const SecretBytes &) = delete;
    SecretBytes &operator=(const SecretBytes &) = delete;
    ~SecretBytes();

    /// A guarded copy of `bytes`. The caller must wipe the original.
    [[nodiscard]] static SecretBytes copyOf(std::span<const std::uint8_t> bytes);
    /// An explicit copy, guarded like the original.
    [[nodiscard]] SecretBytes clone() const { return copyOf(bytes()); }

    /// False if the system refuses to lock as much memory as a wallet's secrets take. They are then
    /// kept in memory that may be written to swap.
    [[nodiscard]] static bool canBeLocked();

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_size == 0; }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return {m_data, m_size}; }
    [[nodiscard]] std::span<std::uint8_t> bytes() noexcept { return {m_data, m_size}; }

    /// Takes a time that depends only on the size.
    [[nodiscard]] bool operator==(const SecretBytes &other) const noexcept;

private:
    std::uint8_t *m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace corvane::platform
