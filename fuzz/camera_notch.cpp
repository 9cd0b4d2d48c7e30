// The size of a camera housing, from the environment.

#include "platform/linux/toolkit/camera_notch.h"
#include "fuzz/property.h"

#include <cmath>

using namespace corvane::platform;
using corvane::fuzz::require;

namespace {

/// With all digits that the form has.
QString textOf(QSizeF notch)
{
    return QString::number(notch.width(), 'f', 6) + u'x' + QString::number(notch.height(), 'f', 6);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(corvane::fuzz::Input(data, size).rest());
    const std::optional<QSizeF> notch = parseNotch(text);
    if (!notch) {
        return 0;
    }
    require(notch->width() > 0 && notch->width() < 1e5);
    require(notch->height() > 0 && notch->height() <= maximumNotchHeight);
    require(parseNotch(textOf(*notch)) == notch);
    require(!parseNotch(text + u'\n') && !parseNotch(u'-' + text));

    Screen screen;
    screen.frame = QRectF(-300, 40, 1280, 100);
    addNotch(screen, *notch);
    const bool fits =
        notch->width() <= screen.frame.width() && notch->height() <= screen.frame.height();
    require(screen.auxiliaryTopLeftArea.has_value() == fits);
    if (fits) {
        const QRectF left = *screen.auxiliaryTopLeftArea;
        const QRectF right = *screen.auxiliaryTopRightArea;
        require(left.left() == screen.frame.left() && left.width() >= 0);
        require(std::abs(right.right() - screen.frame.right()) < 1e-6);
        require(std::abs(right.left() - left.right() - notch->width()) < 1e-6);
        require(left.bottom() <= screen.frame.bottom() + 1e-6 && left.size() == right.size());
    }
    return 0;
}
