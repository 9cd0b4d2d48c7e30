#pragma once

#include "platform/font_registry.h"

#include <QHash>

namespace corvane::platform {

/// Looks up fonts in the fontconfig configuration that Qt uses too, so that it also finds fonts
/// registered with QFontDatabase.
class FontconfigFontRegistry final : public FontRegistry
{
public:
    [[nodiscard]] std::optional<QString> familyOf(const QString &name) const override;
    [[nodiscard]] QString monospacedFamily() const override;

private:
    /// Only successful look-ups: a font that was not found may be registered later.
    mutable QHash<QString, QString> m_families;
};

} // namespace corvane::platform
