// Documents of the price services, each parsed by the parsers of all services, and the resulting
// labels and chart.

#include "core/json.h"
#include "core/labels.h"
#include "core/price_feeds.h"
#include "fuzz/property.h"
#include "look/paint/shapes.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPainterPath>

#include <algorithm>
#include <charconv>
#include <cmath>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using corvane::fuzz::require;

namespace {

bool areSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// Compares the parser of numbers in texts with a second one of the standard library.
void checkNumber(const QString &text)
{
    const std::optional<double> number = parseNumber(text);
    const QByteArray bytes = text.toUtf8();
    double other = 0;
    const auto [rest, error] = std::from_chars(bytes.begin(), bytes.end(), other);
    const bool isWhole = error == std::errc() && rest == bytes.end();
    require(!isWhole || (number && areSame(*number, other)));
    constexpr QByteArrayView plain("0123456789.-");
    if (number && std::ranges::all_of(bytes, [&](char c) { return plain.contains(c); })) {
        require(isWhole || error == std::errc::result_out_of_range);
    }
}

void checkLabel(double value)
{
    for (const int decimals : {0, 2, 4}) {
        const QString label = fixedPoint(value, decimals);
        const std::optional<double> read = parseNumber(label);
        const double step = std::pow(10, -decimals);
        require(read && (areSame(*read, value) || std::abs(*read - value) <= step));
    }
}

void checkChart(const QJsonValue &document)
{
    constexpr qsizetype mostPoints = 72;
    const std::optional<QList<double>> points = readChart(document);
    if (!points) {
        return;
    }
    require(points->size() >= 3 && points->size() <= mostPoints);
    QJsonArray rows;
    for (const double point : *points) {
        require(std::isfinite(point));
        rows.append(QJsonArray{0, point});
    }
    const QRectF card(10, 20, 280, 48);
    const auto [low, high] = std::ranges::minmax(*points);
    for (const bool closed : {false, true}) {
        const QPainterPath line = corvane::look::sparklinePath(card, *points, closed);
        require(line.elementCount() >= points->size());
        require(closed || high / 2 - low / 2 < 1e-9 ||
                std::abs(line.boundingRect().height() - 0.92 * card.height()) < 1e-6);
        for (int i = 0; i < line.elementCount(); ++i) {
            require(card.adjusted(-1e-6, -1e-6, 1e-6, 1e-6).contains(line.elementAt(i)));
        }
    }
    // A chart that is already thinned remains unchanged.
    require(readChart(QJsonObject{{u"prices"_s, rows}}) == points);
    // The end points are kept: repeating the last point changes neither of them.
    QJsonArray more = document["prices"_L1].toArray();
    more.prepend(QJsonArray{0, points->first()});
    more.append(QJsonArray{0, points->last()});
    const auto longer = readChart(QJsonObject{{u"prices"_s, more}});
    require(longer && longer->first() == points->first() && longer->last() == points->last());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body = corvane::fuzz::Input(data, size).rest();
    checkNumber(QString::fromUtf8(body));
    const std::optional<QJsonValue> document = parseJson(body);
    if (!document) {
        return 0;
    }
    int readers = 0;
    for (const PriceSource &source : priceSources()) {
        if (const auto quote = source.read(*document)) {
            ++readers;
            checkLabel(quote->price);
            checkLabel(quote->change.value_or(0));
        }
    }
    require(readers == 0 || document->isObject());
    const QJsonObject object = document->toObject();
    for (const auto &value : object) {
        checkNumber(value.toString());
    }
    checkChart(*document);
    return 0;
}
