#pragma once

#include "platform/font_registry.h"

#include <QHash>

#include <utility>

namespace corvane::tests {

/// Knows the fonts with these names and their families.
class FakeFontRegistry final : public platform::FontRegistry
{
public:
    explicit FakeFontRegistry(QHash<QString, QString> families)
        : m_families(std::move(families))
    {}
    /// A registry of the fonts embedded in the program.
    [[nodiscard]] static FakeFontRegistry bundled()
    {
        return FakeFontRegistry(
            {{QStringLiteral("Silkscreen-Regular"), QStringLiteral("Silkscreen")},
             {QStringLiteral("JetBrainsMono-Regular"), QStringLiteral("JetBrains Mono")}});
    }

    [[nodiscard]] std::optional<QString> familyOf(const QString &name) const override
    {
        const auto found = m_families.constFind(name);
        return found != m_families.cend() ? std::optional(*found) : std::nullopt;
    }
    [[nodiscard]] QString monospacedFamily() const override
    {
        return QStringLiteral("DejaVu Sans Mono");
    }

private:
    QHash<QString, QString> m_families;
};

} // namespace corvane::tests
