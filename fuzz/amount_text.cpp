// Amounts as people type them, on their way to lamports.

#include "core/labels.h"
#include "core/typed_amount.h"
#include "fuzz/property.h"
#include "keys/lamports.h"

#include <QRegularExpression>

#include <cmath>
#include <cstdlib>

using namespace corvane;
using core::parseAmount;
using fuzz::require;
using keys::Lamports;

namespace {

/// An amount that does not fit on the wire stops the process by design.
bool fits(double sol)
{
    return sol > 0 && std::round(sol * Lamports::perSol) < 0x1p64;
}

/// The lamports in a plain number, by whole digits alone. Up to 10^15 of them a double must give
/// the same number.
std::optional<std::uint64_t> exactLamports(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([0-9]{1,6})(?:[.,]([0-9]{0,9}))?\\z"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QString digits = match.captured(1) + match.captured(2).leftJustified(9, u'0');
    return std::strtoull(digits.toLatin1().constData(), nullptr, 10);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(fuzz::Input(data, size).rest());
    const std::optional<double> amount = parseAmount(text);
    require(!amount || std::isfinite(*amount));
    require(parseAmount(QString(text).replace(u',', u'.')) == amount);
    require(!parseAmount(text + u' ') && !parseAmount(u' ' + text));
    require(!parseAmount(text + u'-') && !parseAmount(text + QStringLiteral("..")));

    const std::optional<std::uint64_t> exact = exactLamports(text);
    require(!exact || amount);
    if (!amount || !fits(*amount)) {
        require(!exact || *exact == 0);
        return 0;
    }
    const std::uint64_t lamports = Lamports::fromSol(*amount).count();
    require(!exact || lamports == *exact);
    // A larger amount is never fewer lamports.
    if (const double larger = std::nextafter(*amount, HUGE_VAL); fits(larger)) {
        require(Lamports::fromSol(larger).count() >= lamports);
    }
    // What MAX writes is what would be typed.
    require(parseAmount(core::fixedPoint(*amount, 4)).has_value());
    return 0;
}
