#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QStringView>

#include <optional>

namespace corvane::core {

/// The one JSON value of any type that `text` (UTF-8) consists of; none when it is anything else.
/// A byte order mark in front is skipped; nesting deeper than 1024 is refused.
[[nodiscard]] std::optional<QJsonValue> parseJson(const QByteArray &text);

/// The number that a JSON value is; none for every other type.
[[nodiscard]] std::optional<double> numberIn(const QJsonValue &value);

/// The number that the whole of `text` is, in the forms that strtod accepts in the POSIX locale
/// (exponents, infinity, not-a-number, hexadecimal). None when the text is empty, begins with a
/// blank or control character or holds anything else.
[[nodiscard]] std::optional<double> parseNumber(QStringView text);

} // namespace corvane::core
