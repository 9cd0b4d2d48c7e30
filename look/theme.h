#pragma once

#include "platform/appearance.h"
#include "platform/font_registry.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

class QJSEngine;
class QQmlEngine;

namespace corvane::look {

/// The palette and the two typefaces; the one singleton of the views.
///
/// The entry point makes it, with the fonts of the desktop, and keeps it for as long as there are
/// views. Main thread.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor ink READ ink CONSTANT FINAL)
    Q_PROPERTY(QColor muted READ muted NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor green READ green CONSTANT FINAL)
    Q_PROPERTY(QColor red READ red NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor card READ card CONSTANT FINAL)
    Q_PROPERTY(QColor paper READ paper CONSTANT FINAL)
    Q_PROPERTY(QColor line READ line NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QColor glass READ glass CONSTANT FINAL)
    /// Nothing moves about; what comes and goes fades.
    Q_PROPERTY(bool reducedMotion READ isMotionReduced NOTIFY appearanceChanged FINAL)

public:
    /// The weights that the views use.
    enum Weight { Regular = QFont::Normal, Bold = QFont::Bold, Heavy = QFont::ExtraBold };
    Q_ENUM(Weight)

    explicit Theme(const platform::FontRegistry &fonts, QObject *parent = nullptr);
    ~Theme() override;

    /// Hands the existing object to the QML engine.
    static Theme *create(QQmlEngine *engine, QJSEngine *scripts);

    /// Follows what the user has asked of every program. Colours that are hard to tell from the
    /// ground stand out more in high contrast.
    void setAppearance(const platform::AppearanceSettings &appearance);
    [[nodiscard]] bool isMotionReduced() const { return m_appearance.reducedMotion; }
    /// What the existing theme says; false while there is none.
    [[nodiscard]] static bool reducesMotion();

    /// Primary text, headings, hovered pictograms.
    [[nodiscard]] static QColor ink() { return {244, 241, 233}; }
    /// Secondary text, idle pictograms.
    [[nodiscard]] QColor muted() const
    {
        return m_appearance.highContrast ? QColor(214, 210, 200) : QColor(140, 136, 126);
    }
    /// The accent: buttons, glow, the mark, a rising price.
    [[nodiscard]] static QColor green() { return {60, 208, 107}; }
    /// Errors, destructive actions, a falling price.
    [[nodiscard]] QColor red() const
    {
        return m_appearance.highContrast ? QColor(255, 138, 138) : QColor(232, 86, 86);
    }
    /// Fills of fields and panels.
    [[nodiscard]] static QColor card() { return {28, 28, 33}; }
    /// The ground of a QR code, which cameras read.
    [[nodiscard]] static QColor paper() { return {255, 255, 255}; }
    /// Hairline outlines, laid over whatever is beneath.
    [[nodiscard]] QColor line() const
    {
        return QColor::fromRgbF(1, 1, 1, m_appearance.highContrast ? 0.6F : 0.12F);
    }

    /// Backdrop of a translucent window. On a desktop that blurs nothing, text on it must still be
    /// readable over a white page.
    [[nodiscard]] static QColor glass() { return QColor::fromRgbF(0.13F, 0.13F, 0.14F, 0.72F); }

    /// The pixel typeface at `size` points with `tracking` points between letters; without one of
    /// its fonts the heavy monospaced face of the desktop.
    [[nodiscard]] Q_INVOKABLE QFont pixel(double size, double tracking = 0) const;
    /// The terminal typeface at `size` points with `tracking` points between letters; without it
    /// the monospaced face of the desktop.
    [[nodiscard]] Q_INVOKABLE QFont term(double size, corvane::look::Theme::Weight weight = Regular,
                                         double tracking = 0) const;
    /// `font` with a line beneath.
    [[nodiscard]] Q_INVOKABLE static QFont underlined(QFont font);

Q_SIGNALS:
    /// The desktop's wish for motion or contrast is another one.
    void appearanceChanged();

private:
    const platform::FontRegistry &m_fonts;
    platform::AppearanceSettings m_appearance;
};

} // namespace corvane::look
