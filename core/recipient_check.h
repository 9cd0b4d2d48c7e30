#pragma once

#include "core/known_addresses.h"
#include "core/recipient_replies.h"
#include "core/sol_network.h"
#include "keys/address.h"
#include "keys/lamports.h"

#include <QCoroTask>

#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

namespace corvane::platform {
class HttpClient;
class MainQueue;
class SigningKeys;
class WorkItem;
} // namespace corvane::platform

namespace corvane::core {

/// One line for the user about a recipient.
struct RecipientWarning
{
    QString text;
    /// True if what is sent there is most likely lost.
    bool severe = false;

    [[nodiscard]] bool operator==(const RecipientWarning &) const = default;
};

/// What is known of a recipient.
struct RecipientFacts
{
    keys::Address recipient;
    /// The sender's address; empty if unknown.
    std::optional<keys::Address> own;
    /// False if the recipient is not the address of a key: a program's address or a typing error.
    bool isKey = true;
    /// Empty if unknown.
    std::optional<AccountKind> account;
    /// A known address that the recipient may be mistaken for.
    std::optional<KnownAddress> lookAlike;
};

/// The most severe thing worth telling about a recipient; empty if there is nothing.
[[nodiscard]] std::optional<RecipientWarning> recipientWarning(const RecipientFacts &facts);

/// A recipient and where to ask about it.
struct RecipientQuestion
{
    keys::Address recipient;
    /// The address that would pay; empty if there is no key.
    std::optional<keys::Address> sender;
    SolNetwork network = SolNetwork::Mainnet;
    /// The endpoint that a transfer would use now.
    QUrl endpoint;

    [[nodiscard]] bool operator==(const RecipientQuestion &) const = default;
};

/// The services of a check, all of which must outlive it.
struct RecipientCheckServices
{
    platform::MainQueue &queue;
    platform::HttpClient &http;
    const platform::SigningKeys &signingKeys;
};

/// Finds out what is worth telling about the recipient that is being typed.
///
/// Owned by whatever shows the fields of a transfer, together with `KnownAddresses` of the wallet,
/// which outlives it. The owner calls `check` whenever the recipient, the sender, the network or
/// the endpoint may have changed, and with nothing when there is no valid recipient;
/// `KnownAddresses` is told of each payment by whoever makes it. What is known without asking is
/// known at once; the cluster is asked when the question has not changed for a moment. Every
/// request ends within the time limit of a call, and one that fails changes nothing. Without a
/// question, and after its destruction, the check asks nothing. Main thread.
class RecipientCheck : public QObject
{
    Q_OBJECT

public:
    /// `known` is shared by all checks of a wallet.
    RecipientCheck(RecipientCheckServices services, KnownAddresses &known,
                   QObject *parent = nullptr);
    ~RecipientCheck() override;

    /// Sets the question; the same question again changes nothing.
    void check(const std::optional<RecipientQuestion> &question);

    /// What to tell about the recipient now.
    [[nodiscard]] std::optional<RecipientWarning> warning() const;
    /// What the recipient has on the cluster, 0 if it does not exist; empty if that is unknown.
    [[nodiscard]] std::optional<keys::Lamports> lamports() const;

Q_SIGNALS:
    /// `warning` or `lamports` may have changed.
    void changed();

private:
    /// Whose transactions are being read, and where.
    struct Reading
    {
        keys::Address owner;
        SolNetwork network;
        QUrl endpoint;

        [[nodiscard]] bool fits(const std::optional<RecipientQuestion> &question) const;
    };

    void cancelAlarm();
    QCoro::Task<> ask(RecipientQuestion question);
    /// Remembers with whom the sender dealt lately. Done once for each sender and network.
    QCoro::Task<> readHistory(RecipientQuestion question);

    RecipientCheckServices m_services;
    KnownAddresses &m_known;
    std::optional<RecipientQuestion> m_question;
    std::optional<AccountFacts> m_account;
    std::shared_ptr<platform::WorkItem> m_alarm;
    /// The reading that may go on; each has an object of its own.
    std::shared_ptr<const Reading> m_reading;
};

} // namespace corvane::core
