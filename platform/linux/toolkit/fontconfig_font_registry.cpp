#include "platform/linux/toolkit/fontconfig_font_registry.h"

#include <QFontDatabase>

#include <fontconfig/fontconfig.h>

namespace corvane::platform {

namespace {

/// True when one of the values of `object` is exactly `name`.
bool holds(FcPattern *font, const char *object, const QByteArray &name)
{
    FcChar8 *value = nullptr;
    for (int index = 0; FcPatternGetString(font, object, index, &value) == FcResultMatch; ++index) {
        if (name == reinterpret_cast<const char *>(value)) {
            return true;
        }
    }
    return false;
}

std::optional<QString> familyIn(const FcFontSet *fonts, const QByteArray &name)
{
    if (fonts == nullptr) {
        return std::nullopt;
    }
    for (int index = 0; index < fonts->nfont; ++index) {
        FcPattern *font = fonts->fonts[index];
        FcChar8 *family = nullptr;
        if ((holds(font, FC_POSTSCRIPT_NAME, name) || holds(font, FC_FULLNAME, name) ||
             holds(font, FC_FAMILY, name)) &&
            FcPatternGetString(font, FC_FAMILY, 0, &family) == FcResultMatch) {
            return QString::fromUtf8(reinterpret_cast<const char *>(family));
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> FontconfigFontRegistry::familyOf(const QString &name) const
{
    if (const auto known = m_families.constFind(name); known != m_families.constEnd()) {
        return *known;
    }
    const QByteArray wanted = name.toUtf8();
    // This is the configuration that Qt has loaded already. Its sets are searched in place, without
    // a copy, the few fonts embedded in the program first.
    for (const FcSetName set : {FcSetApplication, FcSetSystem}) {
        if (const auto family = familyIn(FcConfigGetFonts(FcConfigGetCurrent(), set), wanted)) {
            m_families.insert(name, *family);
            return family;
        }
    }
    return std::nullopt;
}

QString FontconfigFontRegistry::monospacedFamily() const
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

} // namespace corvane::platform
