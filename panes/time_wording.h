#pragma once

#include <QDateTime>
#include <QString>

#include <chrono>

namespace corvane::panes {

/// `time` as the user's clock shows it, with the date unless that is the same as at `now`.
inline QString clockText(std::chrono::system_clock::time_point time,
                         std::chrono::system_clock::time_point now)
{
    const auto local = [](std::chrono::system_clock::time_point point) {
        const auto sinceEpoch = point.time_since_epoch();
        return QDateTime::fromMSecsSinceEpoch(
            std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
    };
    const bool isToday = local(time).date() == local(now).date();
    return local(time).toString(isToday ? QStringLiteral("HH:mm")
                                        : QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace corvane::panes
