#pragma once

#include <QRectF>

class QPainter;

namespace corvane::look {

/// The product mark for a desktop's panel, of which nobody knows whether it is dark or light: white
/// with a thin dark edge. Fills the middle square of `rect`, in pixels, for which it is drawn.
void paintStatusMark(QPainter &painter, const QRectF &rect);

} // namespace corvane::look
