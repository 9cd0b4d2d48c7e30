#include "platform/linux/toolkit/camera_notch.h"

#include <QRegularExpression>
#include <QSize>

#include <cmath>

namespace corvane::platform {

namespace {

/// A laptop whose camera housing reaches into its panel, in pixels of the panel.
///
/// No such machine was at hand. The names are those of Linux's device trees
/// (arch/arm64/boot/dts/apple), the modes those that its display driver offers with show_notch=1:
/// 64 or 74 rows more than 16:10. The sizes of the housings are computed from the points that the
/// maker's own system reports, which are whole numbers, so each may be two pixels off: 185 x 32 of
/// 1512 points across (14 inches), 220 x 38 of 2056 (16 inches) and 209 x 38 of 1710 (13 inches).
/// None was found for the 15 inches, which have the pixels per inch of the 13 inches.
struct Laptop
{
    const char *name;
    QSize mode;
    QSize notch;
};

constexpr QSize notchOfAir(313, 57);
constexpr QSize notchOfPro(370, 64);
constexpr QSize mode13(2560, 1664);
constexpr QSize mode14(3024, 1964);
constexpr QSize mode15(2880, 1864);
constexpr QSize mode16(3456, 2234);

constexpr Laptop laptops[] = {
    {"apple,j413", mode13, notchOfAir},  {"apple,j415", mode15, notchOfAir},
    {"apple,j314s", mode14, notchOfPro}, {"apple,j314c", mode14, notchOfPro},
    {"apple,j414s", mode14, notchOfPro}, {"apple,j414c", mode14, notchOfPro},
    {"apple,j316s", mode16, notchOfPro}, {"apple,j316c", mode16, notchOfPro},
    {"apple,j416s", mode16, notchOfPro}, {"apple,j416c", mode16, notchOfPro},
};

/// In points. A scaled size is rounded to whole points; without the rows beside the housing it
/// differs by 16 points even at scale 4.
constexpr double heightTolerance = 2;

} // namespace

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

bool isInternalConnector(const QString &connector)
{
    return connector.startsWith(QLatin1StringView("eDP")) ||
           connector.startsWith(QLatin1StringView("DSI"));
}

std::optional<QSizeF> laptopNotch(const QByteArray &compatible, QSizeF screen)
{
    if (screen.isEmpty()) {
        return std::nullopt;
    }
    const QList<QByteArray> names = compatible.split('\0');
    for (const Laptop &laptop : laptops) {
        if (!names.contains(laptop.name)) {
            continue;
        }
        // Qt's device pixel ratio is a whole number on some window systems, so that the scale
        // follows from the width and the rows from the proportions.
        const double scale = laptop.mode.width() / screen.width();
        if (std::abs(laptop.mode.height() / scale - screen.height()) > heightTolerance) {
            return std::nullopt;
        }
        return QSizeF(laptop.notch) / scale;
    }
    return std::nullopt;
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
