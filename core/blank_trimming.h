#pragma once

#include <QStringView>

namespace corvane::core {

/// `text` without tabs and Unicode space separators at both ends. Line breaks are kept: they make
/// an address or a URL invalid.
[[nodiscard]] inline QStringView trimmingBlanks(QStringView text)
{
    const auto isBlank = [](QChar c) {
        return c == QChar::Tabulation || c.category() == QChar::Separator_Space;
    };
    while (!text.empty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

} // namespace corvane::core
