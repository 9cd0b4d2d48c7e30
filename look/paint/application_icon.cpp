#include "look/paint/application_icon.h"

#include "look/theme.h"

#include <QPainter>

namespace corvane::look {

QColor applicationIconLine()
{
    // As on the island.
    QColor line = Theme::paper();
    line.setAlphaF(0.12F);
    return line;
}

QImage paintApplicationIcon(const ApplicationIcon &icon)
{
    QImage picture(icon.size, icon.size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(icon.tileRect(), icon.radius, icon.radius);
    painter.setPen(applicationIconLine());
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(icon.tileRect().adjusted(0.5, 0.5, -0.5, -0.5), icon.radius - 0.5,
                            icon.radius - 0.5);
    paintQuibMark(painter, icon.markRect(), Theme::green());
    return picture;
}

} // namespace corvane::look
