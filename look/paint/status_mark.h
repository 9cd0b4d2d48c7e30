#pragma once

#include <QRectF>

class QPainter;

namespace corvane::look {

/// Paints the product mark for a desktop's panel: white with a thin dark edge, because the panel
/// may be dark or light. Fills the middle square of `rect`, which is in pixels.
void paintStatusMark(QPainter &painter, const QRectF &rect);

} // namespace corvane::look
