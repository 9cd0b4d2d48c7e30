#include "look/paint/pictogram.h"

#include <QFile>
#include <QMetaEnum>
#include <QPainter>
#include <QSvgRenderer>

namespace corvane::look {

namespace {

/// Frame size relative to the font size: the icons fill four fifths of their frame, and a pictogram
/// should be as large as its font.
constexpr double frameOfFont = 1.25;

} // namespace

Pictogram::Pictogram(QQuickItem *parent)
    : PaintedShape(parent)
{
    connect(this, &Pictogram::fontSizeChanged, this,
            [this] { setImplicitSize(m_fontSize * frameOfFont, m_fontSize * frameOfFont); });
}

void Pictogram::paint(QPainter *painter)
{
    if (m_symbol == Symbol::None) {
        return;
    }
    const char *name = QMetaEnum::fromType<Symbol>().valueToKey(static_cast<int>(m_symbol));
    QFile file(QStringLiteral(":/corvane/pictograms/%1.svg").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    QByteArray svg = file.readAll();
    svg.replace("currentColor", m_color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    painter->setRenderHint(QPainter::Antialiasing);
    renderer.render(painter, boundingRect());
}

} // namespace corvane::look
