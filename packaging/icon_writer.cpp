// Writes the application's icons. Usage: icon_writer FOLDER, where FOLDER is that of the icon
// theme.

#include "look/paint/application_icon.h"
#include "look/paint/shapes.h"
#include "look/theme.h"

#include <QDir>
#include <QImage>
#include <QSaveFile>

#include <cstdio>

namespace {

using namespace corvane::look;

constexpr const ApplicationIcon &scalable = applicationIcons[6];
/// Without a tile; desktops draw it in their text colour.
constexpr ApplicationIcon symbolic{16, 0, 0, 0, 1, 1};

QByteArray vector(const ApplicationIcon &icon, const QColor &colour)
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
                    .arg(applicationIconLine().name())
                    .arg(applicationIconLine().alphaF(), 0, 'f', 2);
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
    for (const ApplicationIcon &icon : applicationIcons) {
        written =
            written && write(theme + QStringLiteral("/%1x%1/apps/%2.png").arg(icon.size).arg(name),
                             paintApplicationIcon(icon));
    }
    if (!written) {
        std::fputs("icon_writer: the icons could not be written\n", stderr);
    }
    return written ? 0 : 1;
}
