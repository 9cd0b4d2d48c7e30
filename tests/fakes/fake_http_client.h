#pragma once

#include "platform/http_client.h"
#include "platform/main_queue.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

namespace corvane::tests {

/// An HTTP client without a network, scripted by a test.
///
/// A request is identified by its name: the "method" member of a JSON body, or otherwise the URL.
/// It is answered from the script on the main queue, after the call has returned, or held until the
/// test releases it. A name that is not in the script fails the test. Requests still held when the
/// client is destroyed are resolved as cancelled.
class FakeHttpClient final : public platform::HttpClient
{
public:
    explicit FakeHttpClient(platform::MainQueue &queue)
        : m_queue(queue)
    {}
    ~FakeHttpClient() override
    {
        cancelHeld();
        // Answers that the queue will never deliver. Those that it has delivered count.
        for (const auto &completion : m_answered) {
            completion.resolve(platform::HttpError::Cancelled);
        }
    }

    /// Answers every later request of this name.
    void answer(const QString &name, platform::HttpResult result)
    {
        m_script.insert_or_assign(name, std::move(result));
    }
    void answer(const QString &name, const QByteArray &body, int status = 200)
    {
        answer(name, platform::HttpReply{status, body});
    }

    /// Holds every later request of this name until it is released.
    void hold(const QString &name) { m_script.insert_or_assign(name, std::nullopt); }

    /// Immediately delivers the result of the oldest held request of this name.
    void release(const QString &name, platform::HttpResult result)
    {
        const auto held = std::ranges::find(m_held, name, &Held::name);
        if (held == m_held.end()) {
            ADD_FAILURE() << "no held request: " << name.toStdString();
            return;
        }
        const platform::Completion<platform::HttpResult> completion = held->completion;
        m_held.erase(held);
        completion.resolve(std::move(result));
    }
    void release(const QString &name, const QByteArray &body)
    {
        release(name, platform::HttpReply{200, body});
    }

    void cancelHeld()
    {
        for (const Held &held : std::exchange(m_held, {})) {
            held.completion.resolve(platform::HttpError::Cancelled);
        }
    }

    platform::Completion<platform::HttpResult> send(platform::HttpRequest request) override
    {
        const platform::Completion<platform::HttpResult> completion;
        const QString name = nameOf(request);
        m_names.push_back(name);
        m_requests.push_back(std::move(request));

        const auto scripted = m_script.find(name);
        if (scripted == m_script.end()) {
            ADD_FAILURE() << "unexpected request: " << name.toStdString();
            completion.resolve(platform::HttpError::Unreachable);
        } else if (scripted->second) {
            m_queue.post([completion, result = *scripted->second] { completion.resolve(result); });
            m_answered.push_back(completion);
        } else {
            m_held.push_back({name, completion});
        }
        return completion;
    }

    /// Every request so far, in order.
    [[nodiscard]] const std::vector<platform::HttpRequest> &requests() const { return m_requests; }
    [[nodiscard]] const std::vector<QString> &names() const { return m_names; }
    [[nodiscard]] std::ptrdiff_t count(const QString &name) const
    {
        return std::ranges::count(m_names, name);
    }
    [[nodiscard]] std::size_t heldRequests() const { return m_held.size(); }
    /// Clears the recorded requests, not the script.
    void forgetRequests()
    {
        m_requests.clear();
        m_names.clear();
    }

private:
    struct Held
    {
        QString name;
        platform::Completion<platform::HttpResult> completion;
    };

    static QString nameOf(const platform::HttpRequest &request)
    {
        const QString method = QJsonDocument::fromJson(request.body)
                                   .object()
                                   .value(QStringLiteral("method"))
                                   .toString();
        return method.isEmpty() ? request.url.toString(QUrl::FullyEncoded) : method;
    }

    platform::MainQueue &m_queue;
    std::map<QString, std::optional<platform::HttpResult>> m_script;
    std::vector<platform::HttpRequest> m_requests;
    std::vector<QString> m_names;
    std::vector<Held> m_held;
    std::vector<platform::Completion<platform::HttpResult>> m_answered;
};

} // namespace corvane::tests
