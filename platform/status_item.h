#pragma once

#include <QList>
#include <QRectF>
#include <QString>

#include <functional>
#include <memory>

class QPainter;

namespace corvane::platform {

/// One line of a status item's menu.
struct MenuItem
{
    /// Empty for a separator.
    QString title;
    /// Run on the main thread when the item is chosen. A title without an action is a heading that
    /// cannot be chosen.
    std::function<void()> action;
    /// A lower-case character that chooses the item, with the desktop's usual modifier, while the
    /// menu is open; empty for none.
    QString keyEquivalent;

    [[nodiscard]] bool isSeparator() const { return title.isEmpty(); }
};

/// Draws a status item's picture into a square of any size. The desktop's panel behind it may be
/// dark or light.
using StatusPicture = std::function<void(QPainter &, const QRectF &)>;

/// The program's place among the desktop's status icons, for as long as it exists.
class StatusItem
{
public:
    StatusItem() = default;
    StatusItem(const StatusItem &) = delete;
    StatusItem &operator=(const StatusItem &) = delete;
    virtual ~StatusItem() = default;
};

/// The desktop's row of status icons. Main thread.
class StatusBar
{
public:
    StatusBar() = default;
    StatusBar(const StatusBar &) = delete;
    StatusBar &operator=(const StatusBar &) = delete;
    virtual ~StatusBar() = default;

    /// Shows `picture` with `menu`, now or as soon as the desktop has a place for it, and again
    /// whenever that place has been away. Never fails: on a desktop without such a place the item
    /// just stays unseen.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem(StatusPicture picture,
                                                                     QList<MenuItem> menu) = 0;
};

} // namespace corvane::platform
