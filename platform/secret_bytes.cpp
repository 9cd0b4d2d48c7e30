#include "platform/secret_bytes.h"

#include <sodium.h>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace corvane::platform {

namespace {

/// In bytes; more than the secrets of a wallet take at the same time. Each takes whole pages.
constexpr std::size_t usualSize = 64UL * 1024;

} // namespace

bool SecretBytes::canBeLocked()
{
    std::vector<std::uint8_t> memory(usualSize);
    const bool isLocked = sodium_init() >= 0 && sodium_mlock(memory.data(), memory.size()) == 0;
    if (isLocked) {
        sodium_munlock(memory.data(), memory.size());
    }
    return isLocked;
}

SecretBytes::SecretBytes(std::size_t size)
    : m_size(size)
{
    if (size == 0) {
        return;
    }
    if (sodium_init() < 0) {
        throw std::bad_alloc();
    }
    m_data = static_cast<std::uint8_t *>(sodium_malloc(size));
    if (m_data == nullptr) {
        throw std::bad_alloc();
    }
    sodium_memzero(m_data, size);
}

SecretBytes::SecretBytes(SecretBytes &&other) noexcept
    : m_data(std::exchange(other.m_data, nullptr))
    , m_size(std::exchange(other.m_size, 0))
{}

SecretBytes &SecretBytes::operator=(SecretBytes &&other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    return *this;
}

SecretBytes::~SecretBytes()
{
    sodium_free(m_data);
}

SecretBytes SecretBytes::copyOf(std::span<const std::uint8_t> bytes)
{
    SecretBytes copy(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.m_data);
    return copy;
}

bool SecretBytes::operator==(const SecretBytes &other) const noexcept
{
    return m_size == other.m_size &&
           (m_size == 0 || sodium_memcmp(m_data, other.m_data, m_size) == 0);
}

} // namespace corvane::platform
