#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::panes {

/// What a card says where the watched address is not that of the wallet's own key, with the way
/// back. All texts are empty without a key, and while its own address is watched. Main thread.
class OwnAddress : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// Another address is watched: the figures and the QR code are not this wallet's.
    Q_PROPERTY(QString warning READ warning NOTIFY changed FINAL)
    /// No valid address is watched: names the wallet's own address.
    Q_PROPERTY(QString offer READ offer NOTIFY changed FINAL)
    /// The label of the button that watches the own address.
    Q_PROPERTY(QString actionLabel READ actionLabel NOTIFY changed FINAL)

public:
    explicit OwnAddress(core::WalletModel &wallet, QObject *parent = nullptr);

    Q_INVOKABLE void watch();

    [[nodiscard]] QString warning() const;
    [[nodiscard]] QString offer() const;
    [[nodiscard]] QString actionLabel() const;

Q_SIGNALS:
    void changed();

private:
    core::WalletModel &m_wallet;
};

} // namespace corvane::panes
