// Pasted secret keys, and the formats in which wallets export keys.

#include "fuzz/property.h"
#include "keys/secret_key_text.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

using namespace corvane;
using fuzz::require;
using platform::SecretBytes;

namespace {

constexpr qsizetype seedSize = platform::SigningKeys::seedSize;

/// Checks that the seed of these bytes can be read in each format that wallets export.
void checkForms(const QByteArray &bytes)
{
    const auto seed = SecretBytes::copyOf(
        {reinterpret_cast<const std::uint8_t *>(bytes.data()), std::size_t{seedSize}});
    platform::PublicKey publicKey;
    std::ranges::copy(seed.bytes(), publicKey.bytes.rbegin());

    const SecretBytes backup = keys::backupText(seed, publicKey);
    const QString text = QString::fromLatin1(reinterpret_cast<const char *>(backup.bytes().data()),
                                             static_cast<qsizetype>(backup.size()));
    require(keys::seedFromText(text) == seed);
    require(keys::seedFromText(u'\n' + text + u' ') == seed);

    QJsonArray numbers;
    for (const std::uint8_t byte : seed.bytes()) {
        // Only the low 8 bits of a number are used.
        numbers.append(qint64{byte} - 256 * (byte % 3));
    }
    for (const auto format : {QJsonDocument::Indented, QJsonDocument::Compact}) {
        const QByteArray array = QJsonDocument(numbers).toJson(format);
        require(keys::seedFromText(QString::fromLatin1(array)) == seed);
    }
}

/// Compares the parser of arrays with a general JSON parser.
void checkArray(const QString &text, const std::optional<SecretBytes> &seed)
{
    if (!text.trimmed().startsWith(u'[')) {
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(text.trimmed().toUtf8());
    const QJsonArray numbers = document.array();
    const auto areWithin = [&](double bound) {
        return std::ranges::all_of(numbers, [bound](const QJsonValue &number) {
            return number.isDouble() && std::abs(number.toDouble()) <= bound;
        });
    };
    require(!seed || (document.isArray() && numbers.size() >= seedSize && areWithin(0x1p63)));
    // A general parser may round larger numbers.
    const bool areIntegers =
        !text.contains(u'.') && !text.contains(u'e', Qt::CaseInsensitive) && areWithin(0x1p53);
    const bool isKey =
        areIntegers && (numbers.size() == seedSize || numbers.size() == 2 * seedSize);
    require(!isKey || seed);
    if (isKey) {
        for (qsizetype i = 0; i < seedSize; ++i) {
            require(seed->bytes()[static_cast<std::size_t>(i)] ==
                    static_cast<std::uint8_t>(numbers.at(i).toInteger()));
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzz::Input(data, size).rest();
    if (bytes.size() == seedSize) {
        checkForms(bytes);
    }
    const QString text = QString::fromUtf8(bytes);
    const std::optional<SecretBytes> seed = keys::seedFromText(text);
    require(!seed || seed->size() == std::size_t{seedSize});
    require(keys::seedFromText(QStringLiteral(" \n") + text + u'\t') == seed);
    checkArray(text, seed);
    return 0;
}
