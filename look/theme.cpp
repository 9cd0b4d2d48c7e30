#include "look/theme.h"

#include <QJSEngine>
#include <QStringList>

#include <cmath>

namespace corvane::look {

namespace {

/// The object that `create` passes to the engine; null while no theme exists.
Theme *existing = nullptr;

QFont fontOf(const QString &family, double size, QFont::Weight weight)
{
    QFont font(family);
    font.setPixelSize(static_cast<int>(std::lround(size)));
    font.setWeight(weight);
    return font;
}

} // namespace

Theme::Theme(const platform::FontRegistry &fonts, QObject *parent)
    : QObject(parent)
    , m_fonts(fonts)
{
    existing = this;
}

Theme::~Theme()
{
    existing = nullptr;
}

Theme *Theme::create(QQmlEngine *, QJSEngine *)
{
    Q_ASSERT(existing != nullptr);
    QJSEngine::setObjectOwnership(existing, QJSEngine::CppOwnership);
    return existing;
}

void Theme::setAppearance(const platform::AppearanceSettings &appearance)
{
    if (appearance != m_appearance) {
        m_appearance = appearance;
        Q_EMIT appearanceChanged();
    }
}

bool Theme::reducesMotion()
{
    return existing != nullptr && existing->isMotionReduced();
}

QFont Theme::pixel(double size, double tracking) const
{
    static const QStringList names{
        QStringLiteral("Silkscreen-Regular"),
        QStringLiteral("Silkscreen"),
        QStringLiteral("PixelifySans-Regular"),
        QStringLiteral("Pixelify Sans"),
    };
    QFont font = fontOf(m_fonts.monospacedFamily(), size, QFont::ExtraBold);
    for (const QString &name : names) {
        if (const auto family = m_fonts.familyOf(name)) {
            font = fontOf(*family, size, QFont::Normal);
            break;
        }
    }
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

QFont Theme::term(double size, Weight weight, double tracking) const
{
    // The family is used only if its regular face exists.
    const bool exists = m_fonts.familyOf(QStringLiteral("JetBrainsMono-Regular")).has_value();
    QFont font = fontOf(exists ? QStringLiteral("JetBrains Mono") : m_fonts.monospacedFamily(),
                        size, static_cast<QFont::Weight>(weight));
    // No ligatures, which would draw "://" or "->" as one sign: addresses and endpoints are read
    // character by character. They are contextual alternates, which letter spacing does not turn
    // off. A monospaced face has nothing else to shape.
    font.setStyleStrategy(QFont::PreferNoShaping);
    if (tracking != 0) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    }
    return font;
}

QFont Theme::underlined(QFont font)
{
    font.setUnderline(true);
    return font;
}

} // namespace corvane::look
