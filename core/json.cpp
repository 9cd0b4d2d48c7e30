#include "core/json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdlib>

#include <locale.h>

namespace corvane::core {

namespace {

constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

/// The first byte that is not JSON white space; 0 if there is none.
char firstByteOfValue(QByteArrayView text)
{
    for (const char byte : text) {
        if (byte != ' ' && byte != '\t' && byte != '\n' && byte != '\r') {
            return byte;
        }
    }
    return '\0';
}

} // namespace

std::optional<QJsonValue> parseJson(const QByteArray &text)
{
    const QByteArray json = text.startsWith(byteOrderMark) ? text.mid(byteOrderMark.size()) : text;
    const char first = firstByteOfValue(json);

    QJsonParseError error;
    if (first == '{' || first == '[') {
        const QJsonDocument document = QJsonDocument::fromJson(json, &error);
        if (error.error != QJsonParseError::NoError) {
            return std::nullopt;
        }
        return document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
    }

    // Qt accepts only objects and arrays at the top level, so the value is parsed as the single
    // element of an array. More than one element means that the text contained a top-level comma.
    const QJsonDocument document = QJsonDocument::fromJson('[' + json + ']', &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1) {
        return std::nullopt;
    }
    return document.array().first();
}

std::optional<double> numberIn(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<double> parseNumber(QStringView text)
{
    if (text.empty() || text.front().isSpace() || text.front().category() == QChar::Other_Control) {
        return std::nullopt;
    }
    // The process's locale may have a decimal comma. Never freed: the C locale is static data of
    // the C library.
    static const locale_t posix = newlocale(LC_ALL_MASK, "C", nullptr);

    const QByteArray bytes = text.toUtf8();
    char *end = nullptr;
    const double number = strtod_l(bytes.constData(), &end, posix);
    if (end != bytes.constData() + bytes.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace corvane::core
