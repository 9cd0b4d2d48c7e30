// Writes the application's icons. Usage: icon_writer FOLDER, where FOLDER is that of the icon
// theme.

#include "look/paint/shapes.h"
#include "look/theme.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSaveFile>

#include <cstdio>

namespace {

using namespace corvane::look;

/// The mark on a black tile, in pixels, in a picture of `size` × `size` pixels.
struct Icon
{
    int size;
    int tileOffset;
    int tile;
    double radius;
    int markOffset;
    /// Side of one unit of the mark's grid. An integer, so that every edge of the mark is on a
    /// pixel boundary.
    int unit;

    [[nodiscard]] QRectF tileRect() const
    {
        return {double(tileOffset), double(tileOffset), double(tile), double(tile)};
    }
    [[nodiscard]] QRectF markRect() const
    {
        const int edge = quibMarkUnits * unit;
        return {double(markOffset), double(markOffset), double(edge), double(edge)};
    }
};

// The mark has an odd number of units. Where centring would need half a pixel, the right and bottom
// margins are one pixel wider. Small icons have narrow margins.
constexpr Icon icons[] = {
    {16, 0, 15, 4, 1, 1},     {22, 0, 21, 5, 4, 1},       {24, 1, 21, 5, 5, 1},
    {32, 0, 32, 8, 3, 2},     {48, 0, 47, 11, 4, 3},      {64, 3, 57, 14, 12, 3},
    {128, 6, 116, 29, 25, 6}, {256, 12, 232, 58, 50, 12},
};
constexpr const Icon &scalable = icons[6];
/// Without a tile; desktops draw it in their text colour.
constexpr Icon symbolic{16, 0, 0, 0, 1, 1};

/// The colour of the outline, as on the island.
QColor hairline()
{
    QColor line = Theme::paper();
    line.setAlphaF(0.12F);
    return line;
}

QImage painted(const Icon &icon)
{
    QImage picture(icon.size, icon.size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(icon.tileRect(), icon.radius, icon.radius);
    // The hairline separates the tile from a dark panel.
    painter.setPen(hairline());
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(icon.tileRect().adjusted(0.5, 0.5, -0.5, -0.5), icon.radius - 0.5,
                            icon.radius - 0.5);
    paintQuibMark(painter, icon.markRect(), Theme::green());
    return picture;
}

QByteArray vector(const Icon &icon, const QColor &colour)
{
    QString text =
        QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%1\" "
                       "viewBox=\"0 0 %1 %1\">\n")
            .arg(icon.size);
    if (icon.tile > 0) {
        text += QStringLiteral("<rect x=\"%1\" y=\"%1\" width=\"%2\" height=\"%2\" rx=\"%3\"/>\n")
                    .arg(icon.tileOffset)
                    .arg(icon.tile)
                    .arg(icon.radius);
        text += QStringLiteral("<rect x=\"%1\" y=\"%1\" width=\"%2\" height=\"%2\" rx=\"%3\" "
                               "fill=\"none\" stroke=\"%4\" stroke-opacity=\"%5\"/>\n")
                    .arg(icon.tileOffset + 0.5)
                    .arg(icon.tile - 1)
                    .arg(icon.radius - 0.5)
                    .arg(hairline().name())
                    .arg(hairline().alphaF(), 0, 'f', 2);
    }
    text += QStringLiteral("<path fill=\"%1\" d=\"").arg(colour.name());
    for (const QRectF &cell : quibMarkRects(icon.markRect())) {
        text += QStringLiteral("M%1 %2h%3v%4h-%3z")
                    .arg(cell.x())
                    .arg(cell.y())
                    .arg(cell.width())
                    .arg(cell.height());
    }
    return (text + QStringLiteral("\"/>\n</svg>\n")).toUtf8();
}

/// Creates the folder of `file`, and opens the file for writing.
bool open(QSaveFile &file)
{
    return QDir().mkpath(QFileInfo(file.fileName()).path()) && file.open(QIODevice::WriteOnly);
}

bool write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return open(file) && file.write(content) == content.size() && file.commit();
}

bool write(const QString &path, const QImage &picture)
{
    QSaveFile file(path);
    return open(file) && picture.save(&file, "PNG") && file.commit();
}

} // namespace

int main(int count, char *arguments[])
{
    if (count != 2) {
        std::fputs("Usage: icon_writer FOLDER\n", stderr);
        return 2;
    }
    const QString theme = QFile::decodeName(arguments[1]);
    const QString name = QStringLiteral("org.corvane.Corvane");
    bool written = write(theme + QStringLiteral("/scalable/apps/%1.svg").arg(name),
                         vector(scalable, Theme::green())) &&
                   write(theme + QStringLiteral("/symbolic/apps/%1-symbolic.svg").arg(name),
                         vector(symbolic, Qt::black));
    for (const Icon &icon : icons) {
        written =
            written && write(theme + QStringLiteral("/%1x%1/apps/%2.png").arg(icon.size).arg(name),
                             painted(icon));
    }
    if (!written) {
        std::fputs("icon_writer: the icons could not be written\n", stderr);
    }
    return written ? 0 : 1;
}
