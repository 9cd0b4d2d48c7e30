#include "platform/linux/curl_http_client.h"
#include "platform/linux/http_redirect.h"
#include "tests/platform/scripted_server.h"
#include "tests/platform/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>

namespace corvane::tests {
namespace {

using namespace std::chrono_literals;
using platform::Completion;
using platform::CurlHttpClient;
using platform::HttpError;
using platform::HttpMethod;
using platform::HttpReply;
using platform::HttpRequest;
using platform::HttpResult;
using Answer = ScriptedServer::Answer;

/// A coroutine that nobody waits for.
struct Detached
{
    struct promise_type
    {
        Detached get_return_object() { return {}; }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_never final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }
    };
};

Detached store(Completion<HttpResult> completion, std::shared_ptr<std::optional<HttpResult>> into)
{
    *into = co_await completion;
}

/// Waits for the result, which must not be there at once.
HttpResult resultOf(const Completion<HttpResult> &completion)
{
    EXPECT_FALSE(completion.await_ready());
    const auto result = std::make_shared<std::optional<HttpResult>>();
    store(completion, result);
    EXPECT_TRUE(waitUntil([&] { return result->has_value(); }));
    return result->value_or(HttpError::Cancelled);
}

HttpRequest get(const QUrl &url, std::chrono::milliseconds timeout = 5s)
{
    return {HttpMethod::Get, url, {}, {}, timeout};
}

HttpRequest post(const QUrl &url, const QByteArray &body)
{
    return {HttpMethod::Post, url, {{"Content-Type", "application/json"}}, body, 5s};
}

int statusOf(const HttpResult &result)
{
    const auto *reply = std::get_if<HttpReply>(&result);
    return reply == nullptr ? -1 : reply->status;
}

QByteArray bodyOf(const HttpResult &result)
{
    const auto *reply = std::get_if<HttpReply>(&result);
    return reply == nullptr ? QByteArray() : reply->body;
}

std::optional<HttpError> errorOf(const HttpResult &result)
{
    const auto *error = std::get_if<HttpError>(&result);
    return error == nullptr ? std::nullopt : std::optional(*error);
}

QByteArrayList headerNames(const QByteArray &request)
{
    QByteArrayList names;
    const QByteArray head = request.left(request.indexOf("\r\n\r\n"));
    for (const QByteArray &line : head.split('\n').mid(1)) {
        names.append(line.split(':').first().toLower());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class CurlHttpClientTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        for (const char *variable :
             {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
            qunsetenv(variable);
        }
    }

    CurlHttpClient m_client;
};

TEST_F(CurlHttpClientTest, ReturnsStatusAndBodyAsTheyCame)
{
    ScriptedServer server([](const QByteArray &request) {
        return request.startsWith("GET /fail")
                   ? ScriptedServer::reply("503 Busy", "{\"e\":1}")
                   : ScriptedServer::reply("200 OK", QByteArray("a\0b", 3));
    });
    const auto good = resultOf(m_client.send(get(server.url())));
    EXPECT_EQ(statusOf(good), 200);
    EXPECT_EQ(bodyOf(good), QByteArray("a\0b", 3));
    const auto bad = resultOf(m_client.send(get(server.url(QStringLiteral("/fail")))));
    EXPECT_EQ(statusOf(bad), 503);
    EXPECT_EQ(bodyOf(bad), "{\"e\":1}");
    // Both went over one connection, and nothing is left to wake the process.
    EXPECT_EQ(server.connections(), 1);
    EXPECT_FALSE(m_client.isActive());
}

TEST_F(CurlHttpClientTest, SendsNothingThatWasNotAskedFor)
{
    ScriptedServer server([](const QByteArray &) { return ScriptedServer::reply("200 OK", ""); });
    QUrl url = server.url(QStringLiteral("/a/../b%2Fc?x=%20y&z=1#fragment"));
    url.setUserInfo(QStringLiteral("user:secret"));
    ASSERT_EQ(statusOf(resultOf(m_client.send(get(url)))), 200);
    EXPECT_TRUE(server.requests().first().startsWith("GET /a/../b%2Fc?x=%20y&z=1 HTTP/1.1\r\n"));
    EXPECT_EQ(headerNames(server.requests().first()),
              QByteArrayList({"accept", "host", "user-agent"}));

    // Long enough for a client that asks for permission first.
    const QByteArray body = "{\"x\":\"" + QByteArray(2 * 1024 * 1024, 'x') + "\"}";
    ASSERT_EQ(statusOf(resultOf(m_client.send(post(server.url(), body)))), 200);
    const QByteArray &posted = server.requests().last();
    EXPECT_TRUE(posted.startsWith("POST / HTTP/1.1\r\n"));
    EXPECT_EQ(headerNames(posted),
              QByteArrayList({"accept", "content-length", "content-type", "host", "user-agent"}));
    EXPECT_TRUE(posted.contains("\r\nContent-Type: application/json\r\n"));
    EXPECT_EQ(posted.mid(posted.indexOf("\r\n\r\n") + 4), body);
}

TEST_F(CurlHttpClientTest, DropsAHeaderThatWouldBeginAnother)
{
    ScriptedServer server([](const QByteArray &) { return ScriptedServer::reply("200 OK", ""); });
    HttpRequest request = get(server.url());
    request.headers = {{"X-One", "a\r\nX-Two: b"}, {"X-Three", "c"}};
    ASSERT_EQ(statusOf(resultOf(m_client.send(request))), 200);
    EXPECT_FALSE(server.requests().first().contains("X-Two"));
    EXPECT_TRUE(server.requests().first().contains("\r\nX-Three: c\r\n"));
}

TEST_F(CurlHttpClientTest, KeepsNoCookies)
{
    ScriptedServer server([](const QByteArray &) {
        return ScriptedServer::reply("200 OK", "", "Set-Cookie: id=1; Path=/\r\n");
    });
    resultOf(m_client.send(get(server.url())));
    resultOf(m_client.send(get(server.url())));
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_FALSE(server.requests().last().toLower().contains("cookie"));
}

TEST_F(CurlHttpClientTest, RefusesWhatIsNoHttpUrl)
{
    for (const char *url : {"", "relative/path", "file:///etc/passwd", "ftp://127.0.0.1/",
                            "http://", "http:///path", "gopher://127.0.0.1:1/"}) {
        EXPECT_EQ(errorOf(resultOf(m_client.send(get(QUrl(QString::fromLatin1(url)))))),
                  HttpError::BadUrl)
            << url;
    }
}

TEST_F(CurlHttpClientTest, FollowsFiveRedirectsAndNoSixth)
{
    ScriptedServer server([](const QByteArray &request) {
        const int left = request.mid(5, 1).toInt();
        return left == 0
                   ? ScriptedServer::reply("200 OK", "end")
                   : ScriptedServer::reply("302 Found", "moved",
                                           "Location: /" + QByteArray::number(left - 1) + "\r\n");
    });
    EXPECT_EQ(bodyOf(resultOf(m_client.send(get(server.url(QStringLiteral("/5")))))), "end");
    EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url(QStringLiteral("/6")))))),
              HttpError::RefusedRedirect);
    EXPECT_EQ(server.requests().size(), 12);
}

TEST_F(CurlHttpClientTest, RepeatsAPostOnlyWhereTheServerInsists)
{
    ScriptedServer server([](const QByteArray &request) {
        const QByteArray status = request.split(' ').at(1).mid(1);
        return status.isEmpty() ? ScriptedServer::reply("200 OK", "end")
                                : ScriptedServer::reply(status + " Moved", "", "Location: /\r\n");
    });
    struct Case
    {
        const char *path;
        const char *method;
    };
    for (const Case &each : {Case{"/301", "GET"}, Case{"/302", "GET"}, Case{"/303", "GET"},
                             Case{"/307", "POST"}, Case{"/308", "POST"}}) {
        const auto url = server.url(QString::fromLatin1(each.path));
        EXPECT_EQ(bodyOf(resultOf(m_client.send(post(url, "{}")))), "end");
        EXPECT_TRUE(server.requests().last().startsWith(each.method)) << each.path;
        EXPECT_EQ(server.requests().last().endsWith("{}"), QByteArray("POST") == each.method);
        EXPECT_EQ(server.requests().last().contains("Content-Type"),
                  QByteArray("POST") == each.method);
    }
    // Neither of these is sent on.
    EXPECT_EQ(statusOf(resultOf(m_client.send(get(server.url(QStringLiteral("/304")))))), 304);
    EXPECT_EQ(statusOf(resultOf(m_client.send(get(server.url(QStringLiteral("/201")))))), 201);
}

TEST_F(CurlHttpClientTest, RefusesARedirectAwayFromHttp)
{
    for (const char *target : {"file:///etc/passwd", "ftp://127.0.0.1/x", "gopher://127.0.0.1/"}) {
        ScriptedServer server([target](const QByteArray &) {
            return ScriptedServer::reply("301 Moved", "",
                                         QByteArray("Location: ") + target + "\r\n");
        });
        EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url())))), HttpError::RefusedRedirect)
            << target;
    }
}

TEST(HttpRedirect, NeverLeavesEncryption)
{
    const QUrl plain(QStringLiteral("http://a.example/"));
    const QUrl secure(QStringLiteral("https://b.example/"));
    EXPECT_TRUE(platform::mayRedirect(plain, plain));
    EXPECT_TRUE(platform::mayRedirect(plain, secure));
    EXPECT_TRUE(platform::mayRedirect(secure, secure));
    EXPECT_FALSE(platform::mayRedirect(secure, plain));
    EXPECT_FALSE(platform::mayRedirect(plain, QUrl(QStringLiteral("/relative"))));
}

TEST_F(CurlHttpClientTest, BoundsTheReply)
{
    const QByteArray most(CurlHttpClient::maximumReplySize, 'x');
    ScriptedServer server([&most](const QByteArray &request) -> Answer {
        const QByteArray path = request.split(' ').at(1);
        if (path == "/most") {
            return ScriptedServer::reply("200 OK", most);
        }
        if (path == "/announced") {
            return {"HTTP/1.1 200 OK\r\nContent-Length: 4194305\r\n\r\n", Answer::Keep};
        }
        return {"HTTP/1.1 200 OK\r\n\r\n" + most + "x", Answer::Close};
    });
    EXPECT_EQ(bodyOf(resultOf(m_client.send(get(server.url(QStringLiteral("/most")))))), most);
    for (const auto &path : {QStringLiteral("/announced"), QStringLiteral("/unannounced")}) {
        EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url(path))))), HttpError::TooLarge)
            << path.toStdString();
    }
}

TEST_F(CurlHttpClientTest, TakesABrokenReplyForNone)
{
    const Answer broken[] = {
        {"", Answer::Abort},
        {"", Answer::Close},
        {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf", Answer::Close},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n", Answer::Close},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n", Answer::Keep},
        {"this is no HTTP at all\r\n\r\n", Answer::Close},
    };
    for (const Answer &answer : broken) {
        ScriptedServer server([&answer](const QByteArray &) { return answer; });
        EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url())))), HttpError::Unreachable)
            << answer.bytes.constData();
    }
    QUrl closed;
    {
        const ScriptedServer server([](const QByteArray &) { return Answer{}; });
        closed = server.url();
    }
    EXPECT_EQ(errorOf(resultOf(m_client.send(get(closed)))), HttpError::Unreachable);
    EXPECT_FALSE(m_client.isActive());
}

TEST_F(CurlHttpClientTest, BoundsTheWholeRequestRedirectsIncluded)
{
    ScriptedServer server([](const QByteArray &request) -> Answer {
        const QByteArray path = request.split(' ').at(1);
        if (path == "/moved") {
            return ScriptedServer::reply("307 Moved", "", "Location: /silent\r\n");
        }
        // Headers come, the body does not; or nothing comes at all.
        return {path == "/half" ? "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nx" : "",
                Answer::Keep};
    });
    for (const auto &path :
         {QStringLiteral("/silent"), QStringLiteral("/half"), QStringLiteral("/moved")}) {
        EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url(path), 60ms)))),
                  HttpError::TimedOut)
            << path.toStdString();
    }
    EXPECT_EQ(errorOf(resultOf(m_client.send(get(server.url(), 0ms)))), HttpError::TimedOut);
    EXPECT_FALSE(m_client.isActive());
}

TEST_F(CurlHttpClientTest, AnswersEachOfManyAtOnce)
{
    ScriptedServer server([](const QByteArray &request) {
        return ScriptedServer::reply("200 OK", request.split(' ').at(1));
    });
    QList<std::shared_ptr<std::optional<HttpResult>>> results;
    for (int index = 0; index < 20; ++index) {
        results.append(std::make_shared<std::optional<HttpResult>>());
        store(m_client.send(get(server.url(QStringLiteral("/%1").arg(index)))), results.last());
    }
    for (int index = 0; index < 20; ++index) {
        const auto result = results.at(index);
        ASSERT_TRUE(waitUntil([&] { return result->has_value(); }));
        EXPECT_EQ(bodyOf(**result), "/" + QByteArray::number(index));
    }
}

TEST(CurlHttpClient, CancelsWhatIsUnderWayWhenItGoes)
{
    ScriptedServer server([](const QByteArray &) { return Answer{}; });
    auto client = std::make_unique<CurlHttpClient>();
    const auto sent = std::make_shared<std::optional<HttpResult>>();
    const auto refused = std::make_shared<std::optional<HttpResult>>();
    store(client->send(get(server.url())), sent);
    store(client->send(get(QUrl())), refused);
    ASSERT_TRUE(waitUntil([&] { return !server.requests().isEmpty(); }));
    client.reset();
    ASSERT_TRUE(sent->has_value());
    EXPECT_EQ(errorOf(**sent), HttpError::Cancelled);
    EXPECT_EQ(errorOf(**refused), HttpError::BadUrl);
}

TEST(CurlHttpClient, MayBeUsedAndDestroyedByItsOwnAnswers)
{
    ScriptedServer server([](const QByteArray &request) {
        return request.startsWith("GET /silent") ? Answer{} : ScriptedServer::reply("200 OK", "x");
    });
    auto client = std::make_unique<CurlHttpClient>();
    QList<HttpResult> results;
    const auto chain = [](std::unique_ptr<CurlHttpClient> &used, const ScriptedServer &from,
                          QList<HttpResult> &into) -> Detached {
        auto first = used->send(get(from.url()));
        into.append(co_await first);
        auto second = used->send(get(from.url()));
        into.append(co_await second);
        used.reset();
        into.append(HttpError::Cancelled);
    };
    // Sends again when it is cancelled, which must end rather than hang.
    const auto stubborn = [](CurlHttpClient &used, const ScriptedServer &from,
                             QList<HttpResult> &into) -> Detached {
        auto first = used.send(get(from.url(QStringLiteral("/silent"))));
        into.append(co_await first);
        auto second = used.send(get(from.url(QStringLiteral("/silent"))));
        into.append(co_await second);
    };
    stubborn(*client, server, results);
    chain(client, server, results);
    ASSERT_TRUE(waitUntil([&] { return results.size() == 5; }));
    EXPECT_EQ(statusOf(results.at(0)), 200);
    EXPECT_EQ(statusOf(results.at(1)), 200);
    EXPECT_EQ(errorOf(results.at(2)), HttpError::Cancelled);
    EXPECT_EQ(errorOf(results.at(3)), HttpError::Cancelled);
}

} // namespace
} // namespace corvane::tests
