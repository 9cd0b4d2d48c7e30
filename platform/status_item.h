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
    /// A lower-case character. With the desktop's usual modifier it activates the item while the
    /// menu is open. Empty for none.
    QString shortcut;

    [[nodiscard]] bool isSeparator() const { return title.isEmpty(); }
};

/// Draws a status item's picture into a square of any size, on a dark or light background.
using StatusPicture = std::function<void(QPainter &, const QRectF &)>;

/// The program's icon among the desktop's status icons; removed when this object is destroyed.
class StatusItem
{
public:
    StatusItem() = default;
    StatusItem(const StatusItem &) = delete;
    StatusItem &operator=(const StatusItem &) = delete;
    virtual ~StatusItem() = default;
};

/// The desktop's area for status icons. Main thread.
class StatusBar
{
public:
    StatusBar() = default;
    StatusBar(const StatusBar &) = delete;
    StatusBar &operator=(const StatusBar &) = delete;
    virtual ~StatusBar() = default;

    /// Shows `picture` with `menu` as soon as the desktop has a status area, and again whenever
    /// that area reappears. Never fails: on a desktop without a status area the item stays
    /// invisible.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem(StatusPicture picture,
                                                                     QList<MenuItem> menu) = 0;
};

} // namespace corvane::platform
