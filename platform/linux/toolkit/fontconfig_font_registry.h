#pragma once

#include "platform/font_registry.h"

#include <QHash>

namespace corvane::platform {

/// Looks fonts up in fontconfig's configuration, which Qt shares: fonts that the program has
/// registered with QFontDatabase are found as well.
class FontconfigFontRegistry final : public FontRegistry
{
public:
    [[nodiscard]] std::optional<QString> familyOf(const QString &name) const override;
    [[nodiscard]] QString monospacedFamily() const override;

private:
    /// What was found; what was not may still be registered later.
    mutable QHash<QString, QString> m_families;
};

} // namespace corvane::platform
