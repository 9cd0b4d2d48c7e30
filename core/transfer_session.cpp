#include "core/transfer_session.h"

#include "core/cancellation.h"
#include "core/json_calls.h"
#include "core/key_session.h"
#include "core/labels.h"
#include "core/wallet_settings.h"
#include "keys/base58.h"
#include "platform/main_queue.h"
#include "platform/settings_store.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace corvane::core {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A blockhash expires after about a minute, and its expiry is final half a minute later. Until
/// then the cluster is asked often; afterwards only an endpoint that does not answer keeps a
/// transfer open.
constexpr std::chrono::seconds oftenFor = 3min;
constexpr std::chrono::seconds oftenPause = 2s;
constexpr std::chrono::seconds rarePause = 30s;
/// For how long a fate is shown at least, if another is waiting.
constexpr std::chrono::seconds newsPause = 5s;
/// Limit of the question to the main cluster whether it knows a blockhash of the test cluster.
constexpr std::chrono::seconds mainnetTimeout = 3s;
/// The number of blocks for which a cluster accepts a blockhash.
constexpr std::uint64_t blockhashLife = 150;

SendError sendFailed()
{
    return SendError::rpc(u"send failed — check balance covers amount + fee"_s);
}

} // namespace

struct TransferSession::Followed
{
    SubmittedTransfer submitted;
    /// True until the cluster has returned the signature: the transfer may not have reached it.
    bool doubtful = true;
    TransferFate fate = TransferFate::Unknown;
    /// True if it was submitted before the current submission.
    bool wasSubmitted = false;
    bool isFollowed = false;
    /// Where the user submitted it again; empty if nowhere.
    std::optional<QUrl> submittedAgainTo{};
    /// True if that endpoint is asked next, instead of the first one.
    bool asksThere = false;
    Cancellation following{};

    [[nodiscard]] TransferIntent intent() const
    {
        const keys::Transfer &transfer = submitted.transfer;
        return {transfer.recipient, transfer.amount, submitted.route.network};
    }
    [[nodiscard]] QUrl latestEndpoint() const
    {
        return submittedAgainTo.value_or(submitted.route.endpoint);
    }
    /// Asks both by turns, because one of them may never answer again.
    [[nodiscard]] QUrl endpointToAsk()
    {
        const bool there = std::exchange(asksThere, !asksThere);
        return there ? latestEndpoint() : submitted.route.endpoint;
    }
    [[nodiscard]] bool isOpen() const { return fate == TransferFate::Unknown; }
};

TransferSession::TransferSession(TransferServices services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
{
    m_stored = submittedTransfersFromJson(
        m_services.settings.string(transfersSetting).value_or(QString()));
    for (const SubmittedTransfer &submitted : m_stored) {
        m_open.push_back(std::make_shared<Followed>(submitted));
        m_open.back()->doubtful = !submitted.isTold;
        m_open.back()->wasSubmitted = true;
    }
    if (m_open.empty()) {
        return;
    }
    m_latest = m_open.back();
    if (const FollowedPtr doubtful = latestDoubtful()) {
        showFate(TransferFate::Checking, doubtful);
    }
    for (const FollowedPtr &transfer : m_open) {
        m_services.queue.post([self = QPointer(this), transfer] {
            if (self) {
                self->startFollowing(transfer, false);
            }
        });
    }
}

TransferSession::~TransferSession()
{
    // Without this the tasks would stop only after their current pause. Cancelling resumes them, so
    // that they must not find their transfer in this object any more.
    for (const FollowedPtr &transfer : std::exchange(m_open, {})) {
        transfer->following.cancel();
    }
}

QCoro::Task<SendResult<QString>> TransferSession::send(keys::Address to, double amountSOL,
                                                       TransferRoute route)
{
    if (!(amountSOL > 0)) {
        co_return Result(SendError::badAmount());
    }
    const TransferIntent intent{to, keys::Lamports::fromSol(amountSOL), route.network};
    if (m_report.sending) {
        co_return Result(SendError::rpc(u"a transfer is under way already"_s));
    }
    const QPointer<TransferSession> self(this);
    m_report = {};
    m_toldOf.reset();
    m_report.sending = true;
    m_hasNews = false;
    tell(false);

    auto attempting = attempt(intent, amountSOL, route);
    const Result result = co_await attempting;
    if (!self) {
        co_return result;
    }
    m_report.sending = false;
    if (const auto *error = std::get_if<SendError>(&result)) {
        m_report.error = *error;
    } else {
        m_report.signature = std::get<QString>(result);
        m_report.sent = intent;
    }
    // What is in doubt now matters more than the fate of an earlier transfer.
    if (const FollowedPtr doubtful = latestDoubtful();
        doubtful && (m_report.fate == TransferFate::Unknown || doubtful == m_latest)) {
        showFate(TransferFate::Checking, doubtful);
    }
    tell(true);
    co_return result;
}

QCoro::Task<SendResult<QString>> TransferSession::attempt(TransferIntent intent, double amountSOL,
                                                          TransferRoute route)
{
    const QPointer<TransferSession> self(this);
    const FollowedPtr earlier = findDoubtful(intent);
    if (!earlier && latestDoubtful() && m_warned != intent) {
        m_warned = intent;
        co_return Result(SendError::rpc(
            u"the earlier transfer may still go through — press again to send this one too"_s));
    }
    m_warned.reset();
    m_hasAttempted = true;
    if (m_latest) {
        m_previous = m_latest;
    }
    m_latest = earlier;

    auto opening =
        m_services.keys.open({platform::PresenceReason::Send,
                              u"send "_s + group(m_services.formatter, amountSOL, 4) + u" SOL"_s});
    if (const bool isOpen = co_await opening; !self || !isOpen) {
        co_return Result(SendError::locked());
    }
    // Made now, because the session may wipe its seed during the requests to the cluster.
    auto signer = m_services.keys.transferSigner(intent.recipient, intent.amount);
    if (!signer) {
        co_return Result(SendError::locked());
    }

    // The earlier transfer was doubtful at the press; its fate may have become known since.
    if (earlier && earlier->submitted.transfer.sender == signer->sender()) {
        if (earlier->fate == TransferFate::WentThrough) {
            co_return Result(earlier->submitted.signatureText());
        }
        if (earlier->isOpen()) {
            earlier->submittedAgainTo = route.endpoint;
            earlier->asksThere = true;
            auto submitting = submit(earlier);
            co_return co_await submitting;
        }
        // It did not go through, so that the payment starts anew.
        showFate(TransferFate::Unknown, nullptr);
        tell(false);
    }

    auto fetching = fetchBlockhash(route);
    const std::optional<LatestBlockhash> recent = co_await fetching;
    if (!self || !recent) {
        co_return Result(SendError::rpc(u"couldn't fetch a recent blockhash"_s));
    }
    const auto [transfer, signature] = (*std::move(signer)).sign(recent->blockhash);
    if (m_previous && m_previous->fate != TransferFate::DidNotGoThrough &&
        m_previous->submitted.signature == signature) {
        // The same bytes would not be executed again, but taken for paid: the endpoint repeats
        // itself.
        co_return Result(SendError::rpc(u"couldn't fetch a recent blockhash"_s));
    }
    const auto signedTransfer = std::make_shared<Followed>(
        SubmittedTransfer{transfer, signature, route, recent->lastValidBlockHeight});
    m_open.push_back(signedTransfer);
    auto submitting = submit(signedTransfer);
    co_return co_await submitting;
}

QCoro::Task<std::optional<LatestBlockhash>> TransferSession::fetchBlockhash(TransferRoute route)
{
    const QPointer<TransferSession> self(this);
    auto call = callRpc(m_services.http, route.endpoint, u"getLatestBlockhash"_s,
                        {QJsonObject{{u"commitment"_s, u"finalized"_s}}});
    const JsonResult reply = co_await call;
    const auto *result = std::get_if<QJsonValue>(&reply);
    const auto recent = result != nullptr ? readBlockhash(*result) : std::nullopt;
    if (!self || !recent || route.network == SolNetwork::Mainnet) {
        co_return recent;
    }
    // With a blockhash of the main cluster, anybody who sees the transfer could submit it there.
    auto question = callRpc(m_services.http, m_services.mainnet, u"isBlockhashValid"_s,
                            {keys::Base58::encode(recent->blockhash.bytes),
                             QJsonObject{{u"commitment"_s, u"processed"_s}}},
                            mainnetTimeout);
    const JsonResult answer = co_await question;
    const auto *known = std::get_if<QJsonValue>(&answer);
    const bool isKnown = known != nullptr && readIsValid(*known);
    co_return isKnown ? std::nullopt : recent;
}

QCoro::Task<SendResult<QString>> TransferSession::submit(FollowedPtr transfer)
{
    const QPointer<TransferSession> self(this);
    const bool isFirst = !std::exchange(transfer->wasSubmitted, true);
    m_latest = transfer;
    store();
    const QJsonObject configuration{{u"encoding"_s, u"base64"_s},
                                    {u"preflightCommitment"_s, u"confirmed"_s}};
    auto call = callRpc(m_services.http, transfer->latestEndpoint(), u"sendTransaction"_s,
                        {QString::fromLatin1(transfer->submitted.transaction()), configuration});
    const JsonResult reply = co_await call;
    const auto *result = std::get_if<QJsonValue>(&reply);
    const std::optional<QString> signature =
        result != nullptr ? readSignature(*result) : std::nullopt;
    const QString expected = transfer->submitted.signatureText();
    const Result outcome = signature ? Result(*signature)
                           : result  ? Result(SendError::rpc(u"unexpected RPC reply"_s))
                                     : Result(sendFailed());
    if (!self) {
        co_return outcome;
    }
    Q_EMIT balancesMayHaveChanged();
    if (signature) {
        Q_EMIT paid(transfer->submitted.transfer.recipient);
    }
    if (transfer->fate == TransferFate::WentThrough) {
        co_return Result(signature.value_or(expected));
    }
    const auto *error = std::get_if<CallError>(&reply);
    if (isFirst && error != nullptr && *error == CallError::Refused) {
        transfer->fate = TransferFate::DidNotGoThrough;
        forget(transfer);
        co_return outcome;
    }
    transfer->doubtful = signature != expected;
    if (signature) {
        m_unseen.push_back(transfer);
    }
    store();
    // Nothing is confirmed at once, and the user reads the outcome first.
    startFollowing(transfer, true);
    co_return outcome;
}

void TransferSession::startFollowing(const FollowedPtr &transfer, bool pauses)
{
    if (transfer->isOpen() && !std::exchange(transfer->isFollowed, true)) {
        follow(this, transfer, pauses);
    }
}

QCoro::Task<> TransferSession::follow(QPointer<TransferSession> self, FollowedPtr transfer,
                                      bool pauses)
{
    platform::MainQueue &queue = self->m_services.queue;
    const auto start = queue.now();
    while (self) {
        if (std::exchange(pauses, true)) {
            const bool often = queue.now() - start < oftenFor;
            const auto pause = transfer->following.sleepFor(queue, often ? oftenPause : rarePause);
            if (co_await pause == SleepEnd::Cancelled) {
                co_return;
            }
        }
        auto asking = ask(self, transfer);
        const TransferFate fate = co_await asking;
        if (self && fate != TransferFate::Checking) {
            self->settle(transfer, fate);
            co_return;
        }
    }
}

QCoro::Task<TransferFate> TransferSession::ask(QPointer<TransferSession> self, FollowedPtr transfer)
{
    SubmittedTransfer &submitted = transfer->submitted;
    const QUrl endpoint = transfer->endpointToAsk();
    // The height is asked first: if the blockhash had expired by then, a transfer that is not found
    // afterwards will never be executed.
    auto heightCall = callRpc(self->m_services.http, endpoint, u"getBlockHeight"_s,
                              {QJsonObject{{u"commitment"_s, u"finalized"_s}}});
    const JsonResult heightReply = co_await heightCall;
    if (!self) {
        co_return TransferFate::Checking;
    }
    auto statusCall = callRpc(self->m_services.http, endpoint, u"getSignatureStatuses"_s,
                              {QJsonArray{submitted.signatureText()},
                               QJsonObject{{u"searchTransactionHistory"_s, true}}});
    const JsonResult statusReply = co_await statusCall;

    const auto *statusResult = std::get_if<QJsonValue>(&statusReply);
    const auto status = statusResult != nullptr ? readStatus(*statusResult) : std::nullopt;
    if (status == TransactionStatus::Succeeded) {
        co_return TransferFate::WentThrough;
    }
    if (status == TransactionStatus::Failed) {
        co_return TransferFate::DidNotGoThrough;
    }
    const auto *heightResult = std::get_if<QJsonValue>(&heightReply);
    const auto height = heightResult != nullptr ? readCount(*heightResult) : std::nullopt;
    if (height && !submitted.lastValidBlockHeight) {
        // The blockhash is older than this block.
        submitted.lastValidBlockHeight = *height + blockhashLife;
    }
    const bool expired = height && *height > *submitted.lastValidBlockHeight;
    const bool isLost = expired && status == TransactionStatus::NotFound;
    co_return isLost ? TransferFate::DidNotGoThrough : TransferFate::Checking;
}

void TransferSession::settle(const FollowedPtr &transfer, TransferFate fate)
{
    transfer->fate = fate;
    const bool wentThrough = fate == TransferFate::WentThrough;
    const bool isNews = transfer->doubtful || !wentThrough;
    if (isNews) {
        m_unseen.push_back(transfer);
    }
    forget(transfer);
    // The confirmation of what was told as sent is no news. It stands beside that, but must not be
    // taken for one of a later transfer.
    const bool isOther = m_toldOf && m_toldOf != transfer && !m_toldOf->isOpen();
    const bool waits = isOther && (m_hasNews || (isNews && isTold(transfer)));
    if (!waits && (isNews || (transfer == m_latest && m_report.signature))) {
        showFate(fate, transfer);
    }
    if (wentThrough) {
        Q_EMIT paid(transfer->submitted.transfer.recipient);
    }
    tell(isNews);
    Q_EMIT balancesMayHaveChanged();
}

TransferSession::FollowedPtr TransferSession::findDoubtful(const TransferIntent &intent) const
{
    const auto found = std::ranges::find_if(m_open, [&](const FollowedPtr &transfer) {
        return transfer->doubtful && transfer->intent() == intent &&
               keys::Address(transfer->submitted.transfer.sender).text() ==
                   m_services.keys.pubkey();
    });
    return found != m_open.end() ? *found : nullptr;
}

TransferSession::FollowedPtr TransferSession::latestDoubtful() const
{
    const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
                                    [](const FollowedPtr &transfer) { return transfer->doubtful; });
    return found != m_open.rend() ? *found : nullptr;
}

void TransferSession::forget(const FollowedPtr &transfer)
{
    std::erase(m_open, transfer);
    store();
}

void TransferSession::store()
{
    std::vector<SubmittedTransfer> stored;
    for (const FollowedPtr &transfer : m_open) {
        stored.push_back(transfer->submitted);
        stored.back().isTold =
            !transfer->doubtful && std::ranges::find(m_unseen, transfer) == m_unseen.end();
    }
    for (const FollowedPtr &transfer : m_unseen) {
        if (!transfer->isOpen()) {
            stored.push_back(transfer->submitted);
        }
    }
    if (stored != m_stored) {
        m_services.settings.setString(transfersSetting,
                                      stored.empty() ? QString() : toJson(stored));
        m_stored = std::move(stored);
    }
}

void TransferSession::markSeen()
{
    m_hasNews = false;
    std::erase_if(m_unseen, [this](const FollowedPtr &transfer) {
        return transfer->isOpen() || transfer == m_toldOf;
    });
    store();
    if (m_unseen.empty()) {
        return;
    }
    m_services.queue.after(newsPause, [self = QPointer(this)] {
        if (self) {
            self->tellNext();
        }
    });
}

bool TransferSession::isTold(const FollowedPtr &transfer) const
{
    return m_report.fate == transfer->fate && m_report.subject == transfer->intent();
}

void TransferSession::tellNext()
{
    if (m_hasNews || m_report.sending || m_unseen.empty()) {
        return;
    }
    const FollowedPtr next = m_unseen.front();
    if (isTold(next)) {
        // Without a break, the same words about two payments would look like those about one.
        showFate(TransferFate::Unknown, nullptr);
        tell(false);
    } else {
        showFate(next->fate, next);
        tell(true);
    }
}

void TransferSession::showFate(TransferFate fate, const FollowedPtr &transfer)
{
    m_toldOf = transfer;
    m_report.fate = fate;
    m_report.subject = transfer ? std::optional(transfer->intent()) : std::nullopt;
    if (fate == TransferFate::WentThrough && transfer == m_latest && !m_report.sending) {
        m_report.error.reset();
        m_report.signature = m_report.signature.value_or(transfer->submitted.signatureText());
        m_report.sent = transfer->intent();
    }
}

void TransferSession::tell(bool isNews)
{
    m_hasNews = m_hasNews || isNews;
    m_report.isEarlier = m_hasAttempted && m_toldOf && m_toldOf != m_latest;
    Q_EMIT reportChanged();
}

} // namespace corvane::core
