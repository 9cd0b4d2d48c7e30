#include "core/typed_amount.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>

namespace corvane::core {

namespace {

/// A positive decimal number: `digits`, without zeros at either end, times a power of ten.
struct Decimal
{
    QByteArray digits;
    qlonglong exponent = 0;

    [[nodiscard]] bool operator==(const Decimal &) const = default;
};

Decimal normalised(QByteArray digits, qlonglong exponent)
{
    while (digits.endsWith('0')) {
        digits.chop(1);
        ++exponent;
    }
    const auto significant = std::ranges::find_if(digits, [](char digit) { return digit != '0'; });
    digits.remove(0, significant - digits.begin());
    return {digits, digits.isEmpty() ? 0 : exponent};
}

} // namespace

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

bool isExactly(QStringView text, keys::Lamports amount)
{
    QByteArray number = text.toLatin1().toLower().replace(',', '.');
    if (number.startsWith('+')) {
        number.remove(0, 1);
    }
    qlonglong exponent = 0;
    if (const auto mark = number.indexOf('e'); mark >= 0) {
        exponent = number.sliced(mark + 1).toLongLong();
        number.truncate(mark);
    }
    if (const auto point = number.indexOf('.'); point >= 0) {
        exponent -= number.size() - point - 1;
        number.remove(point, 1);
    }
    constexpr int lamportExponent = -9;
    return normalised(number, exponent) ==
           normalised(QByteArray::number(qulonglong{amount.count()}), lamportExponent);
}

} // namespace corvane::core
