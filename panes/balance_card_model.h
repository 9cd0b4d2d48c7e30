#pragma once

#include "panes/passing_flag.h"

#include <QList>
#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The model of the balance card: its texts and actions. Main thread.
class BalanceCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// The 24-hour change with its sign; empty if unknown.
    Q_PROPERTY(QString changeText READ changeText NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool changeIsFall READ changeIsFall NOTIFY figuresChanged FINAL)
    /// When the figures were fetched, if they are out of date; otherwise empty.
    Q_PROPERTY(QString asOf READ asOf NOTIFY asOfChanged FINAL)
    /// The balance in dollars or SOL, as chosen by the user.
    Q_PROPERTY(QString headline READ headline NOTIFY figuresChanged FINAL)
    /// The balance in QUIB, and in USDC if known.
    Q_PROPERTY(QString holdings READ holdings NOTIFY figuresChanged FINAL)
    /// The text for screen readers, announced when the balance becomes known. Later changes of the
    /// headline update it without an announcement.
    Q_PROPERTY(QString announcement READ announcement NOTIFY announcementChanged FINAL)
    Q_PROPERTY(QString solPrice READ solPrice NOTIFY figuresChanged FINAL)
    Q_PROPERTY(QList<double> wave READ wave NOTIFY waveChanged FINAL)
    Q_PROPERTY(bool hasAddress READ hasAddress NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool canSend READ canSend NOTIFY figuresChanged FINAL)
    /// The network's name in capitals.
    Q_PROPERTY(QString networkName READ networkName NOTIFY figuresChanged FINAL)
    Q_PROPERTY(bool isMainnet READ isMainnet NOTIFY figuresChanged FINAL)
    /// The shortened address, or the confirmation that it was just copied.
    Q_PROPERTY(QString chipText READ chipText NOTIFY chipChanged FINAL)
    Q_PROPERTY(bool copied READ isCopied NOTIFY chipChanged FINAL)

public:
    BalanceCardModel(core::WalletModel &wallet, island::IslandController &island,
                     platform::MainQueue &queue, QObject *parent = nullptr);
    ~BalanceCardModel() override;

    [[nodiscard]] QString asOf() const { return m_asOf; }
    [[nodiscard]] QString changeText() const { return m_figures.changeText; }
    [[nodiscard]] bool changeIsFall() const { return m_figures.changeIsFall; }
    [[nodiscard]] QString headline() const { return m_figures.headline; }
    [[nodiscard]] QString holdings() const { return m_figures.holdings; }
    [[nodiscard]] QString announcement() const { return m_announcement; }
    [[nodiscard]] QString solPrice() const { return m_figures.solPrice; }
    [[nodiscard]] QList<double> wave() const { return m_wave; }
    [[nodiscard]] bool hasAddress() const { return m_figures.hasAddress; }
    [[nodiscard]] bool canSend() const { return m_figures.canSend; }
    [[nodiscard]] QString networkName() const { return m_figures.networkName; }
    [[nodiscard]] bool isMainnet() const { return m_figures.isMainnet; }
    [[nodiscard]] QString chipText() const;
    [[nodiscard]] bool isCopied() const { return m_copied.isRaised(); }

    /// Switches the headline between dollars and SOL, and stores the choice.
    Q_INVOKABLE void toggleHeadline();
    /// Hides all amounts of the user's money or shows them again, and stores the choice.
    Q_INVOKABLE void toggleAmounts();
    /// Copies the address and shows a confirmation for a short time.
    Q_INVOKABLE void copyAddress();
    /// Each of these shows the corresponding card.
    Q_INVOKABLE void receive();
    Q_INVOKABLE void send();
    Q_INVOKABLE void openSettings();

Q_SIGNALS:
    void figuresChanged();
    void asOfChanged();
    void announcementChanged();
    void waveChanged();
    void chipChanged();

private:
    /// All texts, as last published.
    struct Figures
    {
        QString changeText;
        bool changeIsFall = false;
        QString headline;
        /// True if the headline is a figure, false if it is the sign for an unknown one.
        bool headlineIsKnown = false;
        QString holdings;
        QString solPrice;
        QString address;
        bool hasAddress = false;
        bool canSend = false;
        QString networkName;
        bool isMainnet = true;

        [[nodiscard]] bool operator==(const Figures &) const = default;
    };

    [[nodiscard]] Figures read() const;
    void update();
    /// Follows the age of the figures, now and when they become out of date.
    void updateAge();

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::MainQueue &m_queue;
    std::shared_ptr<platform::WorkItem> m_ageAlarm;
    QString m_asOf;
    Figures m_figures;
    QString m_announcement;
    QList<double> m_wave;
    PassingFlag m_copied;
};

} // namespace corvane::panes
