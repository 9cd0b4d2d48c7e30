#include "core/labels.h"

#include "core/blank_trimming.h"
#include "platform/number_formatter.h"

#include <QTextBoundaryFinder>

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <vector>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView unknownAmount = u"—";
constexpr QStringView hiddenAmount = u"•••••";
/// From this amount on, two fraction digits are shown: four would not fit.
constexpr double largeSol = 1000;
constexpr std::size_t shortenedFrom = 11;
constexpr std::size_t keptAtEitherEnd = 4;

/// The start of each user-perceived character, and the end of the text.
std::vector<qsizetype> characterBounds(const QString &text)
{
    std::vector<qsizetype> bounds{0};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0) {
        bounds.push_back(finder.position());
    }
    return bounds;
}

} // namespace

QString fixedPoint(double value, int decimals)
{
    // QString would round ties away from zero.
    constexpr int longestWholePart = std::numeric_limits<double>::max_exponent10 + 2;
    QByteArray digits(longestWholePart + 1 + decimals, Qt::Uninitialized);
    const auto [end, error] =
        std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals);
    Q_ASSERT(error == std::errc());
    return QString::fromLatin1(digits.constData(), end - digits.constData());
}

QString group(const platform::NumberFormatter &formatter, double value, int decimals)
{
    if (std::optional<QString> text = formatter.decimal(value, decimals)) {
        return *std::move(text);
    }
    return fixedPoint(value, decimals);
}

QString ownAmount(const QString &amount, bool isHidden)
{
    return isHidden && amount != unknownAmount ? hiddenAmount.toString() : amount;
}

QString solLabel(const platform::NumberFormatter &formatter, std::optional<double> sol)
{
    if (!sol) {
        return unknownAmount.toString();
    }
    return group(formatter, *sol, *sol >= largeSol ? 2 : 4) + " SOL"_L1;
}

QString quibLabel(const platform::NumberFormatter &formatter, std::optional<double> sol)
{
    if (!sol) {
        return unknownAmount.toString();
    }
    // std::round rounds halves away from zero; the formatter would round them to even.
    return group(formatter, std::round(*sol * quibPerSol), 0) + " QUIB"_L1;
}

QString shortAddress(QStringView address)
{
    QString trimmed = trimmingBlanks(address).toString();
    const std::vector<qsizetype> bounds = characterBounds(trimmed);
    const std::size_t characters = bounds.size() - 1;
    if (characters < shortenedFrom) {
        return trimmed;
    }
    return trimmed.first(bounds[keptAtEitherEnd]) + u'…' +
           trimmed.sliced(bounds[characters - keptAtEitherEnd]);
}

std::optional<double> totalUSD(std::optional<double> sol, std::optional<double> usdc,
                               std::optional<double> price)
{
    if (!sol || !price) {
        return std::nullopt;
    }
    return *sol * *price + usdc.value_or(0);
}

QString rpcSourceLabel(RpcSource source)
{
    switch (source) {
    case RpcSource::Custom:
        return u"CUSTOM ENDPOINT"_s;
    case RpcSource::HeliusCustom:
        return u"HELIUS · CUSTOM ENDPOINT"_s;
    case RpcSource::Proxy:
        return u"HELIUS · PROXIED VIA YOUR APP"_s;
    case RpcSource::Public:
        return u"PUBLIC RPC (RATE-LIMITED)"_s;
    }
    Q_UNREACHABLE();
}

} // namespace corvane::core
