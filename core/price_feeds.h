#pragma once

#include "core/endpoints.h"

#include <QJsonValue>
#include <QLatin1StringView>
#include <QList>

#include <optional>
#include <span>

namespace corvane::core {

/// What a price service says about one SOL.
struct PriceQuote
{
    double price = 0;             ///< US dollars
    std::optional<double> change; ///< over 24 hours, in percent; none where it is not told

    [[nodiscard]] bool operator==(const PriceQuote &) const = default;
};

/// A price service: where to ask and how to read its answer.
struct PriceSource
{
    /// The service's base address, to which `pathAndQuery` is appended.
    QString Endpoints::*base;
    QLatin1StringView pathAndQuery;
    /// None when the document has an unexpected shape.
    std::optional<PriceQuote> (*read)(const QJsonValue &document);
};

/// The price services in the order in which they are asked.
[[nodiscard]] std::span<const PriceSource> priceSources();

/// Path and query of the one-day chart at CoinGecko.
inline constexpr QLatin1StringView chartPathAndQuery{
    "/api/v3/coins/solana/market_chart?vs_currency=usd&days=1"};

/// The chart's prices in US dollars, oldest first, thinned by index to at most 72 points of which
/// the first and the last are the original ones. None when there are fewer than three points or the
/// document has an unexpected shape.
[[nodiscard]] std::optional<QList<double>> readChart(const QJsonValue &document);

} // namespace corvane::core
