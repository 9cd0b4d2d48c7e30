#pragma once

#include "look/motion/breath.h"

#include <QBasicTimer>
#include <QColor>
#include <QElapsedTimer>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// The product mark, slowly pulsing in brightness and size.
///
/// It starts dim each time it is shown and stops while it is invisible. If the owner polls anyway,
/// it drives the mark with the poll's ticks, so that the animation needs no wake-ups of its own.
class BreathingMark : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Edge length in points.
    Q_PROPERTY(double size MEMBER m_size NOTIFY markSizeChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged FINAL)
    /// Seconds from dim to bright, which is half a cycle.
    Q_PROPERTY(double period MEMBER m_period NOTIFY periodChanged FINAL)
    /// Whether the owner steps the mark by `tick`; otherwise it uses its own timer.
    Q_PROPERTY(bool ticked MEMBER m_ticked NOTIFY tickedChanged FINAL)
    /// Opacity of the mark at its latest step, for items that glow with it.
    Q_PROPERTY(double brightness READ brightness NOTIFY breathed FINAL)

public:
    explicit BreathingMark(QQuickItem *parent = nullptr);
    [[nodiscard]] double brightness() const { return breath().opacity; }
    /// The owner's tick: steps the mark if its brightness has changed visibly.
    Q_INVOKABLE void tick();

Q_SIGNALS:
    void markSizeChanged();
    void colorChanged();
    void periodChanged();
    void tickedChanged();
    /// The mark has been stepped and will be repainted.
    void breathed();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void startOrStop();
    void step();
    [[nodiscard]] Breath breath() const;

    double m_size = 0;
    QColor m_color = Qt::white;
    double m_period = 1;
    bool m_ticked = false;
    QElapsedTimer m_shown;
    /// The opacity at the latest step.
    double m_stepped = 0;
    QBasicTimer m_timer;
    QMetaObject::Connection m_windowVisibility;
};

} // namespace corvane::look
