#pragma once

#include <QImage>
#include <QPointer>
#include <QQuickItem>
#include <QSharedPointer>
#include <QtQmlIntegration/qqmlintegration.h>

class QQuickItemGrabResult;

namespace corvane::look {

/// A blurred picture of another item, shown in its place while it blurs.
///
/// The software scene graph has no effects. The item is therefore captured once when the blur
/// starts, and the picture is blurred again for each radius. It is captured in the frame after the
/// first, because that one may already have to lay out a new item. The owner must hide the item
/// while `showing`.
class BlurVeil : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *source READ source WRITE setSource NOTIFY sourceChanged REQUIRED FINAL)
    /// Gaussian blur radius in points, twice the sigma; at 0 the veil shows nothing.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)
    /// True from the start of the blur until the picture is there. The owner must make the item's
    /// content a little transparent for that time: if a single opaque rectangle lies in it, the
    /// software scene graph takes the whole content for opaque, and the picture of it would have no
    /// transparency.
    Q_PROPERTY(bool capturing READ isCapturing NOTIFY capturingChanged FINAL)
    Q_PROPERTY(bool showing READ isShowing NOTIFY showingChanged FINAL)

public:
    explicit BlurVeil(QQuickItem *parent = nullptr);
    ~BlurVeil() override;

    [[nodiscard]] QQuickItem *source() const { return m_source; }
    void setSource(QQuickItem *source);
    [[nodiscard]] double radius() const { return m_radius; }
    void setRadius(double radius);
    [[nodiscard]] bool isCapturing() const { return m_capturing; }
    [[nodiscard]] bool isShowing() const { return !m_snapshot.isNull(); }
    /// Drops the picture; the next change of the radius captures a new one.
    Q_INVOKABLE void drop();

Q_SIGNALS:
    void sourceChanged();
    void radiusChanged();
    void capturingChanged();
    void showingChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    void grabInNextFrame();
    void grab();
    void setCapturing(bool capturing);

    QPointer<QQuickItem> m_source;
    double m_radius = 0;
    QMetaObject::Connection m_nextFrame;
    QSharedPointer<QQuickItemGrabResult> m_pending;
    bool m_capturing = false;
    QImage m_snapshot;
};

} // namespace corvane::look
