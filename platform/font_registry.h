#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// The fonts that the desktop knows, together with those that the program brings along.
class FontRegistry
{
public:
    FontRegistry() = default;
    FontRegistry(const FontRegistry &) = delete;
    FontRegistry &operator=(const FontRegistry &) = delete;
    virtual ~FontRegistry() = default;

    /// The family of the font whose PostScript, full or family name is exactly `name`; none when
    /// there is no such font. Main thread.
    [[nodiscard]] virtual std::optional<QString> familyOf(const QString &name) const = 0;
    /// The desktop's monospaced family.
    [[nodiscard]] virtual QString monospacedFamily() const = 0;
};

} // namespace corvane::platform
