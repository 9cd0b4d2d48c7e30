#include "core/balances.h"

#include "core/json.h"
#include "keys/lamports.h"

#include <QJsonArray>

#include <algorithm>

namespace corvane::core {

using namespace Qt::StringLiterals;

QString usdcMint(SolNetwork network)
{
    return network == SolNetwork::Devnet ? u"4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU"_s
                                         : u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s;
}

std::optional<double> readSolBalance(const QJsonValue &result)
{
    const std::optional<double> lamports = numberIn(result["value"_L1]);
    return lamports ? std::optional(*lamports / keys::Lamports::perSol) : std::nullopt;
}

std::optional<double> readTokenBalance(const QJsonValue &result)
{
    const QJsonValue value = result["value"_L1];
    const QJsonArray accounts = value.toArray();
    if (!value.isArray() || !std::ranges::all_of(accounts, [](const QJsonValue &account) {
            return account.isObject();
        })) {
        return std::nullopt;
    }
    double total = 0;
    for (const auto &account : accounts) {
        const QJsonValue info = account["account"_L1]["data"_L1]["parsed"_L1]["info"_L1];
        total += numberIn(info["tokenAmount"_L1]["uiAmount"_L1]).value_or(0);
    }
    return total;
}

} // namespace corvane::core
