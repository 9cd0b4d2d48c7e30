#include "look/secrets/accessible_secret_field.h"

#include "look/secrets/secret_field.h"

#include <QQuickWindow>

namespace corvane::look {

namespace {

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *field = qobject_cast<SecretField *>(object);
    return field != nullptr ? new AccessibleSecretField(*field) : nullptr;
}

} // namespace

void AccessibleSecretField::install()
{
    QAccessible::installFactory(makeInterface);
}

AccessibleSecretField::AccessibleSecretField(SecretField &field)
    : QAccessibleObject(&field)
{}

SecretField &AccessibleSecretField::field() const
{
    return *static_cast<SecretField *>(object());
}

QWindow *AccessibleSecretField::window() const
{
    return field().window();
}

QAccessibleInterface *AccessibleSecretField::parent() const
{
    // Items that are part of the view only have no interface.
    for (QQuickItem *item = field().parentItem(); item != nullptr; item = item->parentItem()) {
        if (QAccessibleInterface *around = QAccessible::queryAccessibleInterface(item)) {
            return around;
        }
    }
    return QAccessible::queryAccessibleInterface(window());
}

QAccessible::State AccessibleSecretField::state() const
{
    QAccessible::State state;
    state.focusable = true;
    state.focused = field().hasActiveFocus();
    state.editable = true;
    state.passwordEdit = true;
    state.disabled = !field().isEnabled();
    state.invisible = !field().isVisible() || window() == nullptr || !window()->isVisible();
    return state;
}

QString AccessibleSecretField::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? field().label() : QString();
}

void AccessibleSecretField::setText(QAccessible::Text kind, const QString &text)
{
    if (kind == QAccessible::Value) {
        field().setText(text);
    }
}

QRect AccessibleSecretField::rect() const
{
    const QRectF scene = field().mapRectToScene(field().boundingRect());
    return window() != nullptr ? scene.translated(window()->mapToGlobal(QPointF())).toRect()
                               : QRect();
}

void *AccessibleSecretField::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                : nullptr;
}

QStringList AccessibleSecretField::actionNames() const
{
    return {setFocusAction()};
}

void AccessibleSecretField::doAction(const QString &action)
{
    if (action == setFocusAction()) {
        field().forceActiveFocus(Qt::OtherFocusReason);
    }
}

} // namespace corvane::look
