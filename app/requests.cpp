#include "app/requests.h"

#include <chrono>

namespace corvane::app {

using namespace std::chrono_literals;

namespace {

/// How long a relaunched process waits for the previous instance to exit.
constexpr auto takeOverPatience = 10s;

} // namespace

std::optional<island::IslandPane> paneNamed(const QString &name)
{
    using island::IslandPane;
    constexpr std::pair<QLatin1String, IslandPane> panes[] = {
        {QLatin1String("balance"), IslandPane::Balance},
        {QLatin1String("send"), IslandPane::Send},
        {QLatin1String("receive"), IslandPane::Receive},
        {QLatin1String("settings"), IslandPane::Settings},
    };
    for (const auto &[known, pane] : panes) {
        if (name == known) {
            return pane;
        }
    }
    return std::nullopt;
}

std::optional<EarlyExit> handOver(const Options &options, platform::Instance &instance)
{
    if (options.command != Options::Command::Run) {
        const bool refreshes = options.command == Options::Command::Refresh;
        if (instance.send({refreshes ? refreshAction : quitAction, std::nullopt})) {
            return EarlyExit{};
        }
        return EarlyExit{QStringLiteral("Corvane is not running, or cannot be reached over the "
                                        "session bus.\n"),
                         1};
    }
    if (instance.claim(options.takeOver ? takeOverPatience : 0s) !=
        platform::Instance::Claim::Refused) {
        return std::nullopt;
    }
    platform::InstanceRequest request;
    if (options.open) {
        request = {openAction, options.open};
    } else if (options.hideAmounts) {
        request.action = hideAmountsAction;
    }
    if (!instance.send(request)) {
        return EarlyExit{QStringLiteral("Corvane is running already, but does not answer.\n"), 1};
    }
    if (options.watch) {
        return EarlyExit{QStringLiteral("Corvane is running already; --watch works at its start "
                                        "only.\n"),
                         1};
    }
    return EarlyExit{};
}

} // namespace corvane::app
