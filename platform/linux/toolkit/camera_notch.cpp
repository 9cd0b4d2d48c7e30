#include "platform/linux/toolkit/camera_notch.h"

#include <QRegularExpression>

namespace corvane::platform {

std::optional<QSizeF> parseNotch(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(\A([0-9]{1,5}(?:\.[0-9]{1,6})?)x([0-9]{1,5}(?:\.[0-9]{1,6})?)\z)"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QSizeF size(match.capturedView(1).toDouble(), match.capturedView(2).toDouble());
    if (size.isEmpty() || size.height() > maximumNotchHeight) {
        return std::nullopt;
    }
    return size;
}

void addNotch(Screen &screen, QSizeF notch)
{
    const QRectF frame = screen.frame;
    if (notch.width() > frame.width() || notch.height() > frame.height()) {
        return;
    }
    const double sideWidth = (frame.width() - notch.width()) / 2;
    const double bottom = frame.y() + frame.height() - notch.height();
    screen.safeAreaTop = notch.height();
    screen.auxiliaryTopLeftArea = QRectF(frame.x(), bottom, sideWidth, notch.height());
    screen.auxiliaryTopRightArea =
        QRectF(frame.x() + frame.width() - sideWidth, bottom, sideWidth, notch.height());
}

} // namespace corvane::platform
