#pragma once

#include "platform/presence.h"

#include <QString>

namespace corvane::island {

/// What is missing to ask the user for a key that is protected by their presence, and how to get
/// it; empty if nothing is.
[[nodiscard]] inline QString presenceWording(platform::PresenceMeans means)
{
    switch (means) {
    case platform::PresenceMeans::Available:
        return {};
    case platform::PresenceMeans::NoAgent:
        return QStringLiteral(
            "nobody can ask for your password: start a polkit agent, then try again");
    case platform::PresenceMeans::NotInstalled:
        break;
    }
    return QStringLiteral("nobody can ask for your password: polkit or corvane's polkit action is "
                          "missing — install them, then try again");
}

} // namespace corvane::island
