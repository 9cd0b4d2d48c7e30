#include "core/recipient_check.h"

#include "core/json_calls.h"
#include "core/labels.h"
#include "platform/http_client.h"
#include "platform/main_queue.h"
#include "platform/signing_keys.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>

#include <chrono>

namespace corvane::core {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The typing has paused when nothing changed for this long.
constexpr std::chrono::nanoseconds typingPause = 400ms;
/// Enough for the payments that one remembers, and few enough for a public endpoint.
constexpr int maxTransactions = 10;

QString lookAlikeText(const KnownAddress &known)
{
    const QString dealing =
        known.dealing == Dealing::Paid ? u"you paid before"_s : u"paid you before"_s;
    return u"looks like "_s + shortAddress(known.address.text()) + u", which "_s + dealing +
           u", but is another address"_s;
}

/// What to tell about an account; empty if nothing.
QString accountText(AccountKind kind)
{
    switch (kind) {
    case AccountKind::None:
    case AccountKind::Wallet:
        return {};
    case AccountKind::Program:
        return u"this is a program, not a wallet"_s;
    case AccountKind::Mint:
        return u"this is a token, not a wallet"_s;
    case AccountKind::TokenAccount:
        return u"a token account — coins sent here may be lost"_s;
    case AccountKind::System:
        return u"an account of the system, not a wallet"_s;
    case AccountKind::ProgramData:
        return u"belongs to a program — coins sent here may be lost"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

std::optional<RecipientWarning> recipientWarning(const RecipientFacts &facts)
{
    const auto &[recipient, own, isKey, account, lookAlike] = facts;
    if (recipient == own) {
        return RecipientWarning{u"your own address"_s, false};
    }
    if (own && looksAlike(recipient, *own)) {
        return RecipientWarning{u"looks like your own address, but is another"_s, true};
    }
    if (lookAlike) {
        return RecipientWarning{lookAlikeText(*lookAlike), true};
    }
    if (const QString text = account ? accountText(*account) : QString(); !text.isEmpty()) {
        return RecipientWarning{text, true};
    }
    if (!isKey) {
        return RecipientWarning{u"no key can own this address — a typo, or a program's address"_s,
                                true};
    }
    if (account == AccountKind::None) {
        return RecipientWarning{u"never used on this network"_s, false};
    }
    return std::nullopt;
}

RecipientCheck::RecipientCheck(RecipientCheckServices services, KnownAddresses &known,
                               QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_known(known)
{}

RecipientCheck::~RecipientCheck()
{
    cancelAlarm();
}

void RecipientCheck::check(const std::optional<RecipientQuestion> &question)
{
    if (question == m_question) {
        return;
    }
    m_question = question;
    m_account.reset();
    if (m_reading && !m_reading->fits(question)) {
        m_reading.reset();
    }
    cancelAlarm();
    if (question) {
        m_alarm = m_services.queue.after(typingPause, [this] {
            // The task ends with the requests it has made.
            ask(*m_question);
        });
    }
    Q_EMIT changed();
}

std::optional<RecipientWarning> RecipientCheck::warning() const
{
    if (!m_question) {
        return std::nullopt;
    }
    const keys::Address &recipient = m_question->recipient;
    return recipientWarning({
        .recipient = recipient,
        .own = m_question->sender,
        .isKey = m_services.signingKeys.isPublicKey({recipient.bytes()}),
        .account = m_account ? std::optional(m_account->kind) : std::nullopt,
        .lookAlike = m_known.doubleOf(recipient),
    });
}

std::optional<keys::Lamports> RecipientCheck::lamports() const
{
    return m_account ? std::optional(m_account->lamports) : std::nullopt;
}

void RecipientCheck::cancelAlarm()
{
    if (m_alarm) {
        m_alarm->cancel();
        m_alarm.reset();
    }
}

QCoro::Task<> RecipientCheck::ask(RecipientQuestion question)
{
    const QPointer<RecipientCheck> self(this);
    // Only the byte that is needed: the data may be megabytes.
    const QJsonObject slice{{u"offset"_s, accountTypeOffset}, {u"length"_s, 1}};
    const QJsonObject configuration{
        {u"encoding"_s, u"base64"_s}, {u"commitment"_s, u"confirmed"_s}, {u"dataSlice"_s, slice}};
    auto accountCall = callRpc(m_services.http, question.endpoint, u"getAccountInfo"_s,
                               {question.recipient.text(), configuration});
    const JsonResult reply = co_await accountCall;
    if (!self || m_question != question) {
        co_return;
    }
    const auto *result = std::get_if<QJsonValue>(&reply);
    if (const auto account = result != nullptr ? readAccount(*result) : std::nullopt) {
        m_account = account;
        Q_EMIT changed();
    }
    if (self && m_question == question) {
        auto reading = readHistory(question);
        co_await reading;
    }
}

bool RecipientCheck::Reading::fits(const std::optional<RecipientQuestion> &question) const
{
    return question && question->sender == owner && question->network == network &&
           question->endpoint == endpoint;
}

QCoro::Task<> RecipientCheck::readHistory(RecipientQuestion question)
{
    const std::optional<keys::Address> owner = question.sender;
    if (!owner || m_reading || m_known.hasHistory(*owner, question.network)) {
        co_return;
    }
    const QPointer<RecipientCheck> self(this);
    const auto reading =
        std::make_shared<const Reading>(Reading{*owner, question.network, question.endpoint});
    m_reading = reading;
    const auto goesOn = [self, reading] { return self && self->m_reading == reading; };

    const QJsonObject listing{{u"limit"_s, maxTransactions}, {u"commitment"_s, u"confirmed"_s}};
    auto listCall = callRpc(m_services.http, question.endpoint, u"getSignaturesForAddress"_s,
                            {owner->text(), listing});
    const JsonResult list = co_await listCall;
    if (!goesOn()) {
        co_return;
    }
    const auto *listed = std::get_if<QJsonValue>(&list);
    const auto signatures =
        listed != nullptr ? readSignatures(*listed, maxTransactions) : std::nullopt;
    if (!signatures) {
        m_reading.reset();
        co_return;
    }
    for (const QString &signature : *signatures) {
        const QJsonObject configuration{{u"encoding"_s, u"jsonParsed"_s},
                                        {u"commitment"_s, u"confirmed"_s},
                                        {u"maxSupportedTransactionVersion"_s, 0}};
        auto transactionCall = callRpc(m_services.http, question.endpoint, u"getTransaction"_s,
                                       {signature, configuration});
        const JsonResult reply = co_await transactionCall;
        if (!goesOn()) {
            co_return;
        }
        const auto *result = std::get_if<QJsonValue>(&reply);
        if (result == nullptr) {
            // An endpoint that refuses or does not answer is not asked again and again.
            break;
        }
        for (const KnownAddress &known : readDealings(*result, *owner)) {
            m_known.add(known);
        }
    }
    m_reading.reset();
    m_known.setHasHistory(*owner, question.network);
    Q_EMIT changed();
}

} // namespace corvane::core
