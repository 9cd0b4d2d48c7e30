#pragma once

#include "panes/passing_flag.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The model of the receive pane: the address for payments to the wallet. Main thread.
class ReceivePaneModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    Q_PROPERTY(bool hasAddress READ hasAddress NOTIFY changed FINAL)
    /// The trimmed address; empty if it is invalid.
    Q_PROPERTY(QString address READ address NOTIFY changed FINAL)
    Q_PROPERTY(QString networkName READ networkName NOTIFY changed FINAL)
    Q_PROPERTY(bool isMainnet READ isMainnet NOTIFY changed FINAL)
    Q_PROPERTY(QString copyLabel READ copyLabel NOTIFY copyLabelChanged FINAL)

public:
    ReceivePaneModel(core::WalletModel &wallet, island::IslandController &island,
                     platform::MainQueue &queue, QObject *parent = nullptr);

    /// Copies the address and shows a confirmation for a short time.
    Q_INVOKABLE void copyAddress();
    Q_INVOKABLE void close();

    [[nodiscard]] bool hasAddress() const;
    [[nodiscard]] QString address() const;
    [[nodiscard]] QString networkName() const;
    [[nodiscard]] bool isMainnet() const;
    [[nodiscard]] QString copyLabel() const;

Q_SIGNALS:
    void changed();
    void copyLabelChanged();

private:
    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    PassingFlag m_copied;
};

} // namespace corvane::panes
