#include "core/price_feeds.h"

#include "core/json.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype fewestChartPoints = 3;
/// Limits the cost of drawing and animating the sparkline.
constexpr qsizetype mostChartPoints = 72;

std::optional<PriceQuote> readCoinGecko(const QJsonValue &document)
{
    const QJsonValue solana = document["solana"_L1];
    const std::optional<double> price = numberIn(solana["usd"_L1]);
    if (!price) {
        return std::nullopt;
    }
    return PriceQuote{*price, numberIn(solana["usd_24h_change"_L1])};
}

// A missing or non-text member becomes the empty text, which is not a number.

std::optional<PriceQuote> readBinance(const QJsonValue &document)
{
    const std::optional<double> price = parseNumber(document["lastPrice"_L1].toString());
    if (!price) {
        return std::nullopt;
    }
    // The ticker's price is in USDT, which is treated as US dollars.
    return PriceQuote{*price, parseNumber(document["priceChangePercent"_L1].toString())};
}

std::optional<PriceQuote> readCoinbase(const QJsonValue &document)
{
    const std::optional<double> price = parseNumber(document["data"_L1]["amount"_L1].toString());
    return price ? std::optional(PriceQuote{*price, std::nullopt}) : std::nullopt;
}

constexpr std::array sources = {
    PriceSource{
        &Endpoints::coingecko,
        "/api/v3/simple/price?ids=solana&vs_currencies=usd&include_24hr_change=true"_L1,
        readCoinGecko,
    },
    PriceSource{&Endpoints::binance, "/api/v3/ticker/24hr?symbol=SOLUSDT"_L1, readBinance},
    PriceSource{&Endpoints::coinbase, "/v2/prices/SOL-USD/spot"_L1, readCoinbase},
};

} // namespace

std::span<const PriceSource> priceSources()
{
    return sources;
}

std::optional<QList<double>> readChart(const QJsonValue &document)
{
    const QJsonValue prices = document["prices"_L1];
    const QJsonArray rows = prices.toArray();
    if (!prices.isArray() ||
        !std::ranges::all_of(rows, [](const QJsonValue &row) { return row.isArray(); })) {
        return std::nullopt;
    }
    QList<double> points;
    for (const auto &row : rows) {
        const QJsonArray pair = row.toArray();
        if (const std::optional<double> price = numberIn(pair.last())) {
            points.append(*price);
        }
    }
    if (points.size() < fewestChartPoints) {
        return std::nullopt;
    }

    const qsizetype count = std::min(points.size(), mostChartPoints);
    QList<double> thinned;
    thinned.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        const double position = static_cast<double>(points.size() - 1) * static_cast<double>(i) /
                                static_cast<double>(count - 1);
        thinned.append(points.at(static_cast<qsizetype>(position)));
    }
    return thinned;
}

} // namespace corvane::core
