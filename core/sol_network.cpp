#include "core/sol_network.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

QString rawValue(SolNetwork network)
{
    return network == SolNetwork::Devnet ? u"devnet"_s : u"mainnet"_s;
}

std::optional<SolNetwork> solNetworkFromRawValue(QStringView text)
{
    for (const SolNetwork network : allSolNetworks) {
        if (text == rawValue(network)) {
            return network;
        }
    }
    return std::nullopt;
}

} // namespace corvane::core
