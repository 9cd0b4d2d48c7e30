#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QStringView>

#include <optional>

namespace corvane::core {

/// Parses `text` (UTF-8), which must be exactly one JSON value of any type; empty otherwise. Skips
/// a leading byte order mark; rejects nesting deeper than 1024.
[[nodiscard]] std::optional<QJsonValue> parseJson(const QByteArray &text);

/// The value of a JSON number; empty for every other type.
[[nodiscard]] std::optional<double> numberIn(const QJsonValue &value);

/// Parses the whole of `text` as a number, in the formats that strtod accepts in the POSIX locale
/// (including exponents, infinity, not-a-number and hexadecimal). Empty if the text is empty,
/// starts with a blank or control character, or contains anything else.
[[nodiscard]] std::optional<double> parseNumber(QStringView text);

} // namespace corvane::core
