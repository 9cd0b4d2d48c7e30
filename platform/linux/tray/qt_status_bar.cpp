#include "platform/linux/tray/qt_status_bar.h"

#include "platform/linux/tray/status_tray_watch.h"

#include <QAction>
#include <QCursor>
#include <QIcon>
#include <QIconEngine>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>

#include <utility>

namespace corvane::platform {

namespace {

/// Side lengths in pixels that desktop panels request at scale 1 and 2.
constexpr int pictureSizes[] = {16, 18, 22, 24, 32, 36, 44, 48, 64};

/// Draws the picture separately for each requested size, so that it is never scaled.
class PictureEngine final : public QIconEngine
{
public:
    explicit PictureEngine(StatusPicture picture)
        : m_picture(std::move(picture))
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->save();
        m_picture(*painter, rect);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        m_picture(painter, QRectF(QPointF(), size));
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : pictureSizes) {
            sizes.append(QSize(side, side));
        }
        return sizes;
    }

    [[nodiscard]] QIconEngine *clone() const override { return new PictureEngine(*this); }

private:
    StatusPicture m_picture;
};

/// A menu whose shortcuts work while it is open. Qt handles shortcuts only in menus of windows.
class KeyedMenu final : public QMenu
{
protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const QKeySequence pressed(event->keyCombination());
        for (QAction *action : actions()) {
            if (action->shortcut() == pressed) {
                close();
                action->trigger();
                return;
            }
        }
        QMenu::keyPressEvent(event);
    }
};

/// The icon and its menu, created only when the desktop has a status area, because they load much
/// code.
class Tray
{
public:
    Tray(const StatusPicture &picture, const QList<MenuItem> &items)
        : m_icon(QIcon(new PictureEngine(picture)))
    {
        for (const MenuItem &item : items) {
            if (item.isSeparator()) {
                m_menu.addSeparator();
                continue;
            }
            QAction *action = m_menu.addAction(item.title);
            action->setEnabled(static_cast<bool>(item.action));
            if (!item.shortcut.isEmpty()) {
                action->setShortcut(
                    QKeySequence(QStringLiteral("Ctrl+") + item.shortcut.toUpper()));
            }
            QObject::connect(action, &QAction::triggered, &m_menu, item.action);
        }
        m_icon.setToolTip(QStringLiteral("Corvane"));
        m_icon.setContextMenu(&m_menu);
        // The item has no other function, so that either button opens the menu.
        QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_menu,
                         [this](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger) {
                                 m_menu.popup(QCursor::pos());
                             }
                         });
        m_icon.show();
    }

private:
    KeyedMenu m_menu;
    QSystemTrayIcon m_icon;
};

class QtStatusItem final : public StatusItem
{
public:
    QtStatusItem(StatusPicture picture, QList<MenuItem> menu)
        : m_picture(std::move(picture))
        , m_items(std::move(menu))
        , m_watch([this] { m_tray = std::make_unique<Tray>(m_picture, m_items); })
    {}

private:
    StatusPicture m_picture;
    QList<MenuItem> m_items;
    std::unique_ptr<Tray> m_tray;
    StatusTrayWatch m_watch;
};

} // namespace

std::unique_ptr<StatusItem> QtStatusBar::makeStatusItem(StatusPicture picture, QList<MenuItem> menu)
{
    return std::make_unique<QtStatusItem>(std::move(picture), std::move(menu));
}

} // namespace corvane::platform
