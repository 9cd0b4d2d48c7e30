#include "core/rent_minimum.h"

#include "core/json_calls.h"
#include "core/transfer_outlook.h"
#include "core/transfer_replies.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

/// The cluster may change its minimum, but an answer that is this many times the usual one would
/// only keep the user from paying.
constexpr std::uint64_t plausibleFactor = 10;

} // namespace

RentMinimum::RentMinimum(platform::HttpClient &http, QObject *parent)
    : QObject(parent)
    , m_http(http)
    , m_amount(usualRentMinimum)
{}

void RentMinimum::ask(const QUrl &endpoint)
{
    if (!m_isAsked) {
        m_isAsked = true;
        fetch(this, endpoint);
    }
}

QCoro::Task<> RentMinimum::fetch(QPointer<RentMinimum> self, QUrl endpoint)
{
    auto call = callRpc(self->m_http, endpoint, u"getMinimumBalanceForRentExemption"_s, {0});
    const JsonResult reply = co_await call;
    if (!self) {
        co_return;
    }
    const auto *result = std::get_if<QJsonValue>(&reply);
    const auto amount = result != nullptr ? readCount(*result) : std::nullopt;
    // After a failure the next pane asks again.
    self->m_isAsked = amount.has_value();
    if (amount && *amount <= plausibleFactor * usualRentMinimum.count()) {
        self->m_amount = keys::Lamports(*amount);
        Q_EMIT self->amountChanged();
    }
}

} // namespace corvane::core
