#pragma once

#include "look/paint/painted_shape.h"

#include <QColor>

namespace corvane::look {

/// A pictogram in one colour.
class Pictogram : public corvane::look::PaintedShape
{
    Q_OBJECT
    QML_ELEMENT
    // Named in full, because moc of Qt 6.8 repeats the type outside the class.
    Q_PROPERTY(corvane::look::Pictogram::Symbol symbol MEMBER m_symbol NOTIFY changed FINAL)
    /// Size in points of the adjacent font; determines the item's size.
    Q_PROPERTY(double fontSize MEMBER m_fontSize NOTIFY fontSizeChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    /// assets/pictograms.cmake maps each symbol to an icon.
    enum class Symbol {
        None,
        ArrowClockwise,
        ArrowDownCircleFill,
        ArrowRight,
        Checkmark,
        CheckmarkCircleFill,
        ChevronUp,
        CursorArrowMotionLines,
        DocOnDoc,
        ExclamationMarkTriangleFill,
        FolderFill,
        GearShape,
        KeyFill,
        LockFill,
        PaperPlaneFill,
        QrCode,
        Sparkles,
        SunriseFill,
        TouchId,
        XMark,
    };
    Q_ENUM(Symbol)

    explicit Pictogram(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void fontSizeChanged();

private:
    Symbol m_symbol = Symbol::None;
    double m_fontSize = 0;
    QColor m_color = Qt::white;
};

} // namespace corvane::look
