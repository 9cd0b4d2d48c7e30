#include "platform/linux/x11/covered_display.h"

#include <algorithm>

namespace corvane::platform {

bool isCovered(const QRect &display, const QList<ClientWindow> &clients, std::uint32_t active)
{
    return std::ranges::any_of(clients,
                               [&](const ClientWindow &client) {
                                   return client.shown && client.fullScreen &&
                                          client.area.contains(display);
                               }) &&
           std::ranges::none_of(clients, [&](const ClientWindow &client) {
               return client.id == active && client.shown && !client.fullScreen &&
                      display.contains(client.area.center());
           });
}

} // namespace corvane::platform
