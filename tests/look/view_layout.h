#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

// Checks of the layout of a whole view, with the program's fonts or fallback fonts.

namespace corvane::tests {

/// A text and its position.
struct Writing
{
    QQuickItem *item;
    QString text;
    QRectF place;
};

/// Appends every visible text and editable line in `item`, in the coordinates of `view`.
inline void collect(QQuickItem &item, QQuickItem &view, QList<Writing> &found)
{
    if (!item.isVisible() || item.opacity() == 0) {
        return;
    }
    if (item.inherits("QQuickText") && !item.property("text").toString().isEmpty()) {
        const double width = item.property("contentWidth").toDouble();
        const double left = item.property("effectiveHorizontalAlignment").toInt() == Qt::AlignRight
                                ? item.width() - width
                                : 0;
        const QRectF place(left, 0, width, item.property("contentHeight").toDouble());
        found.append({&item, item.property("text").toString(), item.mapRectToItem(&view, place)});
    } else if (item.property("empty").toBool()) {
        // The placeholder is visible instead.
    } else if (item.inherits("corvane::look::SecretLabel") ||
               item.inherits("corvane::look::SecretField") ||
               item.inherits("corvane::look::RollingText") ||
               item.inherits("corvane::panes::QRCode")) {
        const QRectF place(0, 0, item.width(), item.height());
        found.append({&item, QString::fromLatin1(item.metaObject()->className()),
                      item.mapRectToItem(&view, place)});
    }
    for (QQuickItem *child : item.childItems()) {
        collect(*child, view, found);
    }
}

[[nodiscard]] inline QStringList texts(QQuickItem &view)
{
    QList<Writing> writings;
    collect(view, view, writings);
    QStringList all;
    for (const Writing &writing : writings) {
        all.append(writing.text);
    }
    return all;
}

/// The control in `view` whose accessible name is `name`.
[[nodiscard]] inline QQuickItem *control(const QQuickItem &view, const QString &name)
{
    const auto items = view.findChildren<QQuickItem *>();
    for (QQuickItem *item : items) {
        if (item->isVisible() && item->property("label").toString() == name) {
            return item;
        }
    }
    return nullptr;
}

/// Expects that no text is cut off (unless `mayBeCut`), outside of `inside`, or overlapped.
inline void expectCleanLayout(QQuickItem &view, const QRectF &inside, bool mayBeCut = false)
{
    QList<Writing> writings;
    collect(view, view, writings);
    ASSERT_FALSE(writings.isEmpty());
    for (const Writing &writing : writings) {
        EXPECT_TRUE(mayBeCut || !writing.item->property("truncated").toBool())
            << writing.text.toStdString() << " is cut";
        EXPECT_TRUE(inside.adjusted(-0.5, -0.5, 0.5, 0.5).contains(writing.place))
            << writing.text.toStdString() << " leaves the view";
        for (const Writing &other : writings) {
            const QRectF shared = writing.place.intersected(other.place);
            EXPECT_TRUE(writing.item >= other.item || shared.width() < 0.5 || shared.height() < 0.5)
                << writing.text.toStdString() << " lies over " << other.text.toStdString();
        }
    }
}

} // namespace corvane::tests
