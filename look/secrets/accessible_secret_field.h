#pragma once

#include <QAccessible>
#include <QAccessibleObject>

namespace corvane::look {

class SecretField;

/// What assistive technology learns of a secret field: its name, its state and its place, and
/// nothing of its text, which it may only replace. Qt's own interface of a Quick item has no name
/// for a password field. Main thread.
class AccessibleSecretField : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    /// Makes Qt use this interface for secret fields; called once.
    static void install();

    explicit AccessibleSecretField(SecretField &field);

    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString &text) override;
    [[nodiscard]] QRect rect() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &action) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    [[nodiscard]] SecretField &field() const;
};

} // namespace corvane::look
