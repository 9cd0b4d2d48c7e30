#include "platform/linux/toolkit/icu_number_formatter.h"

#include <QList>

#include <unicode/uloc.h>
#include <unicode/unum.h>

#include <array>

namespace corvane::platform {

namespace {

constexpr const char *fallbackLocale = "en_US";
/// Upper limit for a caller's request. A double has far fewer significant digits.
constexpr int maximumDecimals = 100;

/// The ICU name of a POSIX locale name such as `de_DE.UTF-8` or `sr_RS@latin`.
QByteArray canonicalLocale(const QByteArray &name)
{
    // ICU names contain languages, countries and modifiers, but no encodings.
    const qsizetype modifier = name.indexOf('@') < 0 ? name.size() : name.indexOf('@');
    const QByteArray plain = name.left(modifier).split('.').first();
    if (plain.isEmpty() || plain == "C" || plain == "POSIX") {
        return fallbackLocale;
    }
    std::array<char, ULOC_FULLNAME_CAPACITY> canonical{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_canonicalize((plain + name.mid(modifier)).constData(), canonical.data(),
                      static_cast<int32_t>(canonical.size()), &status);
    if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING) {
        return fallbackLocale;
    }
    return canonical.data();
}

QByteArray languageOf(const char *locale)
{
    std::array<char, ULOC_LANG_CAPACITY> language{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_getLanguage(locale, language.data(), static_cast<int32_t>(language.size()), &status);
    return U_SUCCESS(status) ? QByteArray(language.data()) : QByteArray();
}

/// True if ICU does not know the language and silently used the process's default locale instead.
bool isOfDefaultLanguage(const UNumberFormat *format, const QByteArray &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray actual = languageOf(unum_getLocaleByType(format, ULOC_ACTUAL_LOCALE, &status));
    return U_SUCCESS(status) && actual != languageOf(locale.constData()) &&
           actual == languageOf(uloc_getDefault());
}

UNumberFormat *openDecimal(const char *locale, UErrorCode &status)
{
    return unum_open(UNUM_DECIMAL, nullptr, 0, locale, nullptr, &status);
}

} // namespace

struct IcuNumberFormatter::Format
{
    Format(const QByteArray &locale, int decimals)
    {
        UErrorCode status = U_ZERO_ERROR;
        handle = openDecimal(locale.constData(), status);
        if (U_FAILURE(status) || isOfDefaultLanguage(handle, locale)) {
            unum_close(handle);
            status = U_ZERO_ERROR;
            handle = openDecimal(fallbackLocale, status);
        }
        if (U_FAILURE(status)) {
            unum_close(handle);
            handle = nullptr;
            return;
        }
        unum_setAttribute(handle, UNUM_GROUPING_USED, 1);
        unum_setAttribute(handle, UNUM_MIN_FRACTION_DIGITS, decimals);
        unum_setAttribute(handle, UNUM_MAX_FRACTION_DIGITS, decimals);
        unum_setAttribute(handle, UNUM_ROUNDING_MODE, UNUM_ROUND_HALFEVEN);
    }
    Format(const Format &) = delete;
    Format &operator=(const Format &) = delete;
    ~Format() { unum_close(handle); }

    UNumberFormat *handle = nullptr;
};

IcuNumberFormatter::IcuNumberFormatter(const QByteArray &locale)
    : m_locale(canonicalLocale(locale))
{}

IcuNumberFormatter::~IcuNumberFormatter() = default;

QByteArray IcuNumberFormatter::localeOfEnvironment()
{
    for (const char *variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty()) {
            return value;
        }
    }
    return {};
}

std::optional<QString> IcuNumberFormatter::decimal(double value, int decimals) const
{
    if (decimals < 0 || decimals > maximumDecimals) {
        return std::nullopt;
    }
    std::unique_ptr<Format> &format = m_formats[decimals];
    if (!format) {
        format = std::make_unique<Format>(m_locale, decimals);
    }
    if (format->handle == nullptr) {
        return std::nullopt;
    }
    static_assert(sizeof(UChar) == sizeof(QChar));
    UErrorCode status = U_ZERO_ERROR;
    QString text(64, Qt::Uninitialized);
    const auto write = [&] {
        return unum_formatDouble(format->handle, value, reinterpret_cast<UChar *>(text.data()),
                                 static_cast<int32_t>(text.size()), nullptr, &status);
    };
    int32_t length = write();
    if (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        text.resize(length);
        length = write();
    }
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.truncate(length);
    return text;
}

} // namespace corvane::platform
