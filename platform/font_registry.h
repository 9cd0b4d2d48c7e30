#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// The fonts installed on the desktop and those embedded in the program.
class FontRegistry
{
public:
    FontRegistry() = default;
    FontRegistry(const FontRegistry &) = delete;
    FontRegistry &operator=(const FontRegistry &) = delete;
    virtual ~FontRegistry() = default;

    /// The family of the font whose PostScript, full or family name is exactly `name`; empty if
    /// there is no such font. Main thread.
    [[nodiscard]] virtual std::optional<QString> familyOf(const QString &name) const = 0;
    /// The desktop's default monospaced family. Main thread.
    [[nodiscard]] virtual QString monospacedFamily() const = 0;
};

} // namespace corvane::platform
