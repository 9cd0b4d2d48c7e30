#pragma once

#include "core/sol_network.h"
#include "keys/lamports.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>
#include <QUrl>

#include <optional>

namespace corvane::platform {
class HttpClient;
}

namespace corvane::core {

/// What an account must keep unless it keeps nothing. The cluster is asked once in each run; until
/// it has answered, and if its answer is implausible, the usual minimum applies. Main thread.
class RentMinimum : public QObject
{
    Q_OBJECT

public:
    /// `http` must outlive this object.
    explicit RentMinimum(platform::HttpClient &http, QObject *parent = nullptr);

    [[nodiscard]] keys::Lamports amount() const { return m_amount; }
    /// Asks at `endpoint`, unless an answer is known or being waited for.
    void ask(const QUrl &endpoint);

Q_SIGNALS:
    void amountChanged();

private:
    static QCoro::Task<> fetch(QPointer<RentMinimum> self, QUrl endpoint);

    platform::HttpClient &m_http;
    keys::Lamports m_amount;
    bool m_isAsked = false;
};

} // namespace corvane::core
