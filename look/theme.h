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

/// The palette and the two typefaces; the only singleton of the views.
///
/// The entry point creates it with the desktop's fonts. It must outlive all views. Main thread.
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
    /// Nothing moves; items fade in and out.
    Q_PROPERTY(bool reducedMotion READ isMotionReduced NOTIFY appearanceChanged FINAL)

public:
    /// The weights that the views use.
    enum Weight { Regular = QFont::Normal, Bold = QFont::Bold, Heavy = QFont::ExtraBold };
    Q_ENUM(Weight)

    explicit Theme(const platform::FontRegistry &fonts, QObject *parent = nullptr);
    ~Theme() override;

    /// Passes the existing object to the QML engine.
    static Theme *create(QQmlEngine *engine, QJSEngine *scripts);

    /// Applies the user's appearance settings. In high contrast, colours that differ little from
    /// the background become stronger.
    void setAppearance(const platform::AppearanceSettings &appearance);
    [[nodiscard]] bool isMotionReduced() const { return m_appearance.reducedMotion; }
    /// `isMotionReduced` of the existing theme; false if there is none.
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
    /// The background of a QR code; white for cameras.
    [[nodiscard]] static QColor paper() { return {255, 255, 255}; }
    /// Translucent hairline outlines.
    [[nodiscard]] QColor line() const
    {
        return QColor::fromRgbF(1, 1, 1, m_appearance.highContrast ? 0.6F : 0.12F);
    }

    /// Background of a translucent window. Opaque enough for text to be readable over a white page
    /// on a desktop without blur.
    [[nodiscard]] static QColor glass() { return QColor::fromRgbF(0.13F, 0.13F, 0.14F, 0.72F); }

    /// The pixel typeface at `size` points with `tracking` points between letters; if one of its
    /// fonts is missing, the heavy monospaced face of the desktop.
    [[nodiscard]] Q_INVOKABLE QFont pixel(double size, double tracking = 0) const;
    /// The terminal typeface at `size` points with `tracking` points between letters; if it is
    /// missing, the monospaced face of the desktop.
    [[nodiscard]] Q_INVOKABLE QFont term(double size, corvane::look::Theme::Weight weight = Regular,
                                         double tracking = 0) const;
    /// `font`, underlined.
    [[nodiscard]] Q_INVOKABLE static QFont underlined(QFont font);

Q_SIGNALS:
    /// The setting for motion or contrast has changed.
    void appearanceChanged();

private:
    const platform::FontRegistry &m_fonts;
    platform::AppearanceSettings m_appearance;
};

} // namespace corvane::look
