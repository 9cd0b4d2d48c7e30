#include "look/secrets/secret_text.h"

#include <algorithm>

namespace corvane::look {

namespace {

/// Initial capacity: enough for a key in Base58 without a second allocation.
constexpr qsizetype firstRoom = 128;

} // namespace

QStringView SecretText::view() const
{
    // The data ends at the end of a guarded page, so that an even size aligns it for UTF-16.
    return {reinterpret_cast<const char16_t *>(m_memory.bytes().data()), m_size};
}

char16_t *SecretText::units()
{
    return reinterpret_cast<char16_t *>(m_memory.bytes().data());
}

void SecretText::reserve(qsizetype size)
{
    const auto room = static_cast<qsizetype>(m_memory.size() / sizeof(char16_t));
    if (size <= room) {
        return;
    }
    const qsizetype units = std::max({size, 2 * room, firstRoom});
    platform::SecretBytes larger(static_cast<std::size_t>(units) * sizeof(char16_t));
    std::ranges::copy(m_memory.bytes(), larger.bytes().begin());
    m_memory = std::move(larger);
}

void SecretText::assign(std::span<const std::uint8_t> ascii)
{
    const auto size = std::min(static_cast<qsizetype>(ascii.size()), capacity);
    reserve(size);
    std::ranges::copy(ascii.first(static_cast<std::size_t>(size)), units());
    m_size = size;
    Q_EMIT changed();
}

qsizetype SecretText::insert(qsizetype position, QStringView text)
{
    Q_ASSERT(position >= 0 && position <= m_size);
    const QStringView fitting = text.first(std::min(text.size(), capacity - m_size));
    if (fitting.isEmpty()) {
        return 0;
    }
    reserve(m_size + fitting.size());
    char16_t *const begin = units();
    std::copy_backward(begin + position, begin + m_size, begin + m_size + fitting.size());
    std::copy(fitting.utf16(), fitting.utf16() + fitting.size(), begin + position);
    m_size += fitting.size();
    Q_EMIT changed();
    return fitting.size();
}

void SecretText::remove(qsizetype position, qsizetype count)
{
    Q_ASSERT(position >= 0 && count >= 0 && position + count <= m_size);
    if (count == 0) {
        return;
    }
    char16_t *const begin = units();
    std::copy(begin + position + count, begin + m_size, begin + position);
    std::fill(begin + m_size - count, begin + m_size, u'\0');
    m_size -= count;
    Q_EMIT changed();
}

void SecretText::clear()
{
    if (m_size == 0) {
        return;
    }
    m_memory = {};
    m_size = 0;
    Q_EMIT changed();
}

void SecretText::forget()
{
    std::fill(units(), units() + m_size, u'*');
    Q_EMIT changed();
}

} // namespace corvane::look
