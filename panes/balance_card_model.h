#pragma once

#include "core/wallet_model.h"
#include "island/island_controller.h"

#include <QList>
#include <QObject>
#include <QQmlParserStatus>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::panes {

/// What the balance card shows, in words, and what its controls do. Main thread.
class BalanceCardModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(corvane::core::WalletModel *wallet MEMBER m_wallet REQUIRED FINAL)
    Q_PROPERTY(corvane::island::IslandController *island MEMBER m_island REQUIRED FINAL)
    /// The 24-hour change with its sign; empty while it is unknown.
    Q_PROPERTY(QString changeText READ changeText NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool changeIsFall READ changeIsFall NOTIFY figuresChanged FINAL)
    /// Dollars or SOL, as the user has chosen.
    Q_PROPERTY(QString headline READ headline NOTIFY figuresChanged FINAL)
    /// The balance in QUIB, and in USDC once it is known.
    Q_PROPERTY(QString holdings READ holdings NOTIFY figuresChanged FINAL)
    Q_PROPERTY(QString solPrice READ solPrice NOTIFY figuresChanged FINAL)
    Q_PROPERTY(QList<double> wave READ wave NOTIFY waveChanged FINAL)
    Q_PROPERTY(bool hasAddress READ hasAddress NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool canSend READ canSend NOTIFY figuresChanged FINAL)
    /// The network's name in capitals.
    Q_PROPERTY(QString networkName READ networkName NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool isMainnet READ isMainnet NOTIFY figuresChanged FINAL)
    /// The shortened address, or that it has just been copied.
    Q_PROPERTY(QString chipText READ chipText NOTIFY chipChanged FINAL)
    Q_PROPERTY(bool copied READ isCopied NOTIFY chipChanged FINAL)

public:
    explicit BalanceCardModel(QObject *parent = nullptr);

    [[nodiscard]] QString changeText() const;
    [[nodiscard]] bool changeIsFall() const;
    [[nodiscard]] QString headline() const;
    [[nodiscard]] QString holdings() const;
    [[nodiscard]] QString solPrice() const;
    [[nodiscard]] QList<double> wave() const;
    [[nodiscard]] bool hasAddress() const;
    [[nodiscard]] bool canSend() const;
    [[nodiscard]] QString networkName() const;
    [[nodiscard]] bool isMainnet() const;
    [[nodiscard]] QString chipText() const;
    [[nodiscard]] bool isCopied() const { return m_copied; }

    /// Switches the headline between dollars and SOL, for good.
    Q_INVOKABLE void toggleHeadline();
    /// Copies the address and says so for a moment.
    Q_INVOKABLE void copyAddress();
    Q_INVOKABLE void receive();
    Q_INVOKABLE void send();
    Q_INVOKABLE void openSettings();

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void figuresChanged();
    void waveChanged();
    void chipChanged();

private:
    void setCopied(bool copied);

    core::WalletModel *m_wallet = nullptr;
    island::IslandController *m_island = nullptr;
    bool m_copied = false;
};

} // namespace corvane::panes
