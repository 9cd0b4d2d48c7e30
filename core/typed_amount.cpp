#include "core/typed_amount.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>

namespace corvane::core {

std::optional<double> parseAmount(QStringView text)
{
    const bool plain = std::ranges::all_of(text, [](QChar c) {
        constexpr QStringView allowed = u"0123456789.,eE+-";
        return allowed.contains(c);
    });
    if (!plain) {
        return std::nullopt;
    }
    QByteArray digits = text.toLatin1().replace(',', '.');
    // std::from_chars accepts no leading plus sign.
    if (digits.startsWith('+') && !digits.startsWith("+-")) {
        digits.remove(0, 1);
    }
    double value = 0;
    const char *const end = digits.constData() + digits.size();
    const auto [rest, error] = std::from_chars(digits.constData(), end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

} // namespace corvane::core
