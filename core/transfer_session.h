#pragma once

#include "core/send_error.h"
#include "core/submitted_transfer.h"
#include "core/transfer_replies.h"
#include "keys/address.h"
#include "keys/lamports.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace corvane::platform {
class HttpClient;
class MainQueue;
class NumberFormatter;
class SettingsStore;
} // namespace corvane::platform

namespace corvane::core {

class Cancellation;
class KeySession;

/// What became of a transfer that was submitted.
enum class TransferFate {
    Unknown,  ///< the cluster has accepted it, or nothing was submitted
    Checking, ///< it may or may not have been executed; the cluster is being asked
    WentThrough,
    DidNotGoThrough, ///< it failed, or can no longer be executed
};

/// What the user wants to pay, and whom.
struct TransferIntent
{
    keys::Address recipient;
    keys::Lamports amount;
    SolNetwork network = SolNetwork::Mainnet;

    [[nodiscard]] bool operator==(const TransferIntent &) const = default;
};

/// The latest transfer as it is told to the user.
struct TransferReport
{
    /// True from the press until the cluster's answer, including the prompt to the user.
    bool sending = false;
    /// The latest accepted transfer's signature, as the cluster returned it.
    std::optional<QString> signature;
    /// The transfer with that signature; empty without one.
    std::optional<TransferIntent> sent;
    /// Why the latest attempt failed.
    std::optional<SendError> error;
    TransferFate fate = TransferFate::Unknown;
    /// The transfer with that fate; empty if `fate` is unknown.
    std::optional<TransferIntent> subject;
    /// True if that is not the transfer of the latest press in this run.
    bool isEarlier = false;
};

/// The services of the session, all of which must outlive it.
struct TransferServices
{
    platform::MainQueue &queue;
    platform::HttpClient &http;
    platform::SettingsStore &settings;
    const platform::NumberFormatter &formatter;
    KeySession &keys;
    /// The built-in endpoint of the main cluster.
    QUrl mainnet;
};

/// The wallet's transfers: one at a time is being sent, and each submitted one is followed until it
/// is confirmed or can no longer be executed.
///
/// | state of a transfer | after                                      | next state |
/// |---------------------|--------------------------------------------|----------------------------|
/// | sending             | the cluster refuses it                     | forgotten | | | the cluster
/// returns its signature          | accepted                   | |                     | any other
/// answer, or none                  | doubtful                   | | accepted            | its
/// status, or the expiry of its blockhash | went through, did not      | | doubtful            |
/// the same                                   | the same                   | | | the same intent
/// again                      | sending: **the same bytes** |
///
/// A cluster executes the same bytes at most once, so that repeating a doubtful transfer cannot pay
/// twice. Another intent while a transfer is doubtful is refused once and accepted when repeated.
/// A transfer is stored before it is submitted, and until its fate is known and the user was shown
/// what became of it, so that neither a crash nor a restart leaves the user guessing.
///
/// Main thread. Tasks continue even if they are destroyed; they change nothing after the session is
/// destroyed.
class TransferSession : public QObject
{
    Q_OBJECT

public:
    /// Continues to follow the stored transfers.
    explicit TransferSession(TransferServices services, QObject *parent = nullptr);
    ~TransferSession() override;

    /// Sends SOL and returns the transaction's signature as soon as the cluster has accepted it.
    /// Prompts the user if the key is locked. Fails while another transfer is being sent. Aborts
    /// the process if the amount cannot be represented in lamports.
    QCoro::Task<SendResult<QString>> send(keys::Address to, double amountSOL, TransferRoute route);

    [[nodiscard]] const TransferReport &report() const { return m_report; }
    /// True if the report contains a result or a fate that no view has shown yet.
    [[nodiscard]] bool hasNews() const { return m_hasNews; }
    /// To be called when a view has shown the report, except while sending.
    void markSeen();

Q_SIGNALS:
    void reportChanged();
    /// The cluster has answered, or the fate of a transfer is known: balances may have changed.
    void balancesMayHaveChanged();
    /// A transfer was accepted or went through.
    void paid(const corvane::keys::Address &recipient);

private:
    using Result = SendResult<QString>;
    struct Followed;
    using FollowedPtr = std::shared_ptr<Followed>;

    QCoro::Task<Result> attempt(TransferIntent intent, double amountSOL, TransferRoute route);
    QCoro::Task<std::optional<LatestBlockhash>> fetchBlockhash(TransferRoute route);
    /// Submits the transfer, for the first time or again, and follows it afterwards.
    QCoro::Task<Result> submit(FollowedPtr transfer);
    /// Asks the cluster until the fate is known; at once, or first after a pause.
    static QCoro::Task<> follow(QPointer<TransferSession> self, FollowedPtr transfer, bool pauses);
    /// Asks the cluster once; `Checking` if the fate is still open.
    static QCoro::Task<TransferFate> ask(QPointer<TransferSession> self, FollowedPtr transfer);
    void startFollowing(const FollowedPtr &transfer, bool pauses);
    /// True if the report already says the same, in the same words.
    [[nodiscard]] bool isTold(const FollowedPtr &transfer) const;
    void tellNext();
    void showFate(TransferFate fate, const FollowedPtr &transfer);
    void settle(const FollowedPtr &transfer, TransferFate fate);

    /// The doubtful transfer with this intent and the wallet's key; null if there is none.
    [[nodiscard]] FollowedPtr findDoubtful(const TransferIntent &intent) const;
    [[nodiscard]] FollowedPtr latestDoubtful() const;
    void forget(const FollowedPtr &transfer);
    /// Writes the transfers to the settings if they are not there already.
    void store();
    /// Announces a change of the report; `isNews` tells whether it has a result or a fate to show.
    void tell(bool isNews);

    TransferServices m_services;
    TransferReport m_report;
    bool m_hasNews = false;
    /// Transfers with an open fate, oldest first.
    std::vector<FollowedPtr> m_open;
    /// Transfers whose acceptance or fate no view has shown yet.
    std::vector<FollowedPtr> m_unseen;
    /// What the settings contain.
    std::vector<SubmittedTransfer> m_stored;
    /// The transfer whose fate the report contains; null if there is none.
    FollowedPtr m_toldOf;
    /// The transfer of the latest press; null until it is submitted. And the one before that.
    FollowedPtr m_latest;
    FollowedPtr m_previous;
    /// True once a transfer was begun in this run.
    bool m_hasAttempted = false;
    /// The intent that was refused because an earlier transfer is doubtful.
    std::optional<TransferIntent> m_warned;
};

} // namespace corvane::core
