#include "platform/linux/http/curl_http_client.h"
#include "platform/linux/http/curl_request.h"
#include "tests/fakes/table.h"
#include "tests/platform/scripted_server.h"
#include "tests/platform/wait_until.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>

namespace corvane::tests {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using namespace platform;
using Answer = ScriptedServer::Answer;
using Pending = Completion<HttpResult>;

/// The type of a coroutine without a caller that awaits it.
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

HttpRequest get(const QUrl &url, std::chrono::milliseconds timeout = patience)
{
    return {HttpMethod::Get, url, {}, {}, timeout};
}

HttpRequest post(const QUrl &url, const QByteArray &body)
{
    return {HttpMethod::Post, url, {{"Content-Type", "application/json"}}, body, patience};
}

Answer movedTo(const QByteArray &target, const QByteArray &status = "307")
{
    return ScriptedServer::reply(status + " Moved", "moved", "Location: " + target + "\r\n");
}

QByteArray pathOf(const QByteArray &request)
{
    return request.split(' ').at(1);
}

/// The status and the body, or an exclamation mark and the error's number.
QByteArray textOf(const HttpResult &result)
{
    const auto *reply = std::get_if<HttpReply>(&result);
    return reply != nullptr
               ? QByteArray::number(reply->status) + ' ' + reply->body
               : '!' + QByteArray::number(static_cast<int>(std::get<HttpError>(result)));
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

    /// Waits for the result, which must not be available immediately.
    static HttpResult resultOf(const Pending &pending)
    {
        EXPECT_FALSE(pending.await_ready());
        EXPECT_TRUE(waitUntil([&] { return pending.await_ready(); }));
        return pending.await_ready() ? pending.await_resume() : HttpError::Cancelled;
    }
    QByteArray ask(const HttpRequest &request) { return textOf(resultOf(m_client->send(request))); }

    std::unique_ptr<CurlHttpClient> m_client = std::make_unique<CurlHttpClient>();
};

TEST_F(CurlHttpClientTest, ReturnsStatusAndBodyAsTheyCame)
{
    ScriptedServer server([](const QByteArray &request) {
        return pathOf(request) == "/fail" ? ScriptedServer::reply("503 Busy", "{\"e\":1}")
                                          : ScriptedServer::reply("200 OK", QByteArray("a\0b", 3));
    });
    EXPECT_EQ(ask(get(server.url())), QByteArray("200 a\0b", 7));
    EXPECT_EQ(ask(get(server.url(u"/fail"_s))), "503 {\"e\":1}");
    // Both requests used one connection, and nothing remains that could wake the process.
    EXPECT_EQ(server.connections(), 1);
    EXPECT_FALSE(m_client->isActive());
}

TEST_F(CurlHttpClientTest, RepeatsOnlyWhatMayBeRepeatedOnAKeptConnectionThatIsDead)
{
    const QByteArray delivered = "200 x";
    const QByteArray lost = textOf(HttpError::Unreachable);
    for (const auto &[redirected, once, requests, answer] : Table<bool, bool, int, QByteArray>{
             {false, false, 2, delivered},
             {false, true, 1, delivered}, // over a new connection
             {true, false, 2, delivered},
             {true, true, 1, lost}, // libcurl chooses the connection after a redirect
         }) {
        SCOPED_TRACE(testing::Message() << redirected << once);
        ScriptedServer server([&](const QByteArray &request) {
            return pathOf(request) == "/die" && server.connections() == 1
                       ? Answer{{}, Answer::Abort}
                       : ScriptedServer::reply("200 OK", "x");
        });
        const QUrl target = server.url(u"/die"_s);
        ScriptedServer door([&](const QByteArray &) { return movedTo(target.toEncoded()); });
        m_client = std::make_unique<CurlHttpClient>();
        EXPECT_EQ(ask(get(server.url())), delivered);
        HttpRequest request = post(redirected ? door.url() : target, "{}");
        request.once = once;
        EXPECT_EQ(ask(request), answer);
        EXPECT_EQ(server.requests().size(), 1 + requests);
    }
}

TEST_F(CurlHttpClientTest, SendsNothingThatWasNotAskedFor)
{
    ScriptedServer server([](const QByteArray &) {
        return ScriptedServer::reply("200 OK", "", "Set-Cookie: id=1; Path=/\r\n");
    });
    const auto headers = [&server] {
        const QString request = QString::fromLatin1(server.requests().last());
        QStringList names = request.section(u"\r\n\r\n"_s, 0, 0).toLower().split(u"\r\n"_s).mid(1);
        names.replaceInStrings(QRegularExpression(u":.*"_s), QString());
        names.sort();
        return names.join(u' ');
    };
    const QUrl url = server.url(u"/a/../b%2Fc?x=%20y&z=1#fragment"_s);
    HttpRequest request = get(url);
    // Sent neither: a header with a line break, and a cookie with the second request.
    request.headers = {{"X-One", "a\r\nX-Two: b"}, {"X-Three", "c"}};
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(ask(request), "200 ");
        EXPECT_TRUE(server.requests().last().startsWith("GET /a/../b%2Fc?x=%20y&z=1 HTTP/1.1\r\n"));
        EXPECT_EQ(headers(), u"accept host user-agent x-three"_s);
    }

    // Long enough that curl would wait for a "100 Continue" by default.
    const QByteArray body = "{\"x\":\"" + QByteArray(2 * 1024 * 1024, 'x') + "\"}";
    ASSERT_EQ(ask(post(server.url(), body)), "200 ");
    EXPECT_EQ(headers(), u"accept content-length content-type host user-agent"_s);
    EXPECT_TRUE(server.requests().last().contains("\r\nContent-Type: application/json\r\n"));
    EXPECT_TRUE(server.requests().last().endsWith("\r\n\r\n" + body));
}

TEST_F(CurlHttpClientTest, RefusesWhatIsNoHttpUrl)
{
    for (const char *url : {"", "relative/path", "file:///etc/passwd", "ftp://127.0.0.1/",
                            "http://", "http:///path", "gopher://127.0.0.1:1/"}) {
        EXPECT_EQ(ask(get(QUrl(QString::fromLatin1(url)))), textOf(HttpError::BadUrl)) << url;
    }
}

TEST_F(CurlHttpClientTest, FollowsFiveRedirectsWithinHttpAndRepeatsAPostOnlyWhereItMust)
{
    ScriptedServer server([](const QByteArray &request) {
        const QByteArray path = pathOf(request);
        if (path.startsWith("/to/")) {
            return movedTo(path.mid(4));
        }
        if (path.size() == 4) {
            return movedTo("/0", path.mid(1));
        }
        const int left = path.mid(1).toInt();
        return left == 0 ? ScriptedServer::reply("200 OK", "end")
                         : movedTo('/' + QByteArray::number(left - 1), "302");
    });
    const auto refused = textOf(HttpError::RefusedRedirect);
    for (const auto &[path, answer] : Table<QString, QByteArray>{
             {u"/5"_s, "200 end"},
             {u"/6"_s, refused},
             {u"/to/file:///etc/passwd"_s, refused},
             {u"/to/ftp://127.0.0.1/x"_s, refused},
             {u"/201"_s, "201 moved"},
         }) {
        EXPECT_EQ(ask(get(server.url(path))), answer) << path.toStdString();
    }
    for (const auto &[path, repeats] : Table<QString, bool>{
             {u"/301"_s, false},
             {u"/302"_s, false},
             {u"/303"_s, false},
             {u"/307"_s, true},
             {u"/308"_s, true},
         }) {
        EXPECT_EQ(ask(post(server.url(path), "{}")), "200 end") << path.toStdString();
        EXPECT_TRUE(server.requests().last().startsWith(repeats ? "POST" : "GET"));
        EXPECT_EQ(server.requests().last().endsWith("{}"), repeats);
        EXPECT_EQ(server.requests().last().contains("Content-Type"), repeats);
    }
}

/// A self-signed test certificate with its key, valid for a hundred years.
QByteArray certificate()
{
    QFile file(QStringLiteral(CORVANE_TEST_DATA "/self_signed.pem"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// The result of a request that accepts any certificate.
QByteArray trustingly(const QUrl &url)
{
    CurlRequest request(get(url));
    EXPECT_TRUE(request.prepare());
    curl_easy_setopt(request.handle(), CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(request.handle(), CURLOPT_SSL_VERIFYHOST, 0L);
    CURLM *multi = curl_multi_init();
    curl_multi_add_handle(multi, request.handle());
    const CURLMsg *ended = nullptr;
    EXPECT_TRUE(waitUntil([&] {
        int count = 0;
        curl_multi_perform(multi, &count);
        ended = curl_multi_info_read(multi, &count);
        return ended != nullptr;
    }));
    const CURLcode code = ended != nullptr ? ended->data.result : CURLE_FAILED_INIT;
    curl_multi_remove_handle(multi, request.handle());
    curl_multi_cleanup(multi);
    return textOf(request.conclude(code));
}

TEST_F(CurlHttpClientTest, NeverLeavesEncryption)
{
    QUrl target;
    const auto script = [&](const QByteArray &request) {
        return pathOf(request) == "/end" ? ScriptedServer::reply("200 OK", "end")
                                         : movedTo(target.toEncoded(), "302");
    };
    ScriptedServer plain(script);
    ScriptedServer secure(script, certificate());
    const auto refused = textOf(HttpError::RefusedRedirect);
    target = secure.url(u"/end"_s);
    EXPECT_EQ(trustingly(plain.url()), "200 end");
    EXPECT_EQ(trustingly(secure.url()), "200 end");
    EXPECT_EQ(ask(get(secure.url())), textOf(HttpError::Unreachable))
        << "the certificate is not trusted";
    target = plain.url(u"/end"_s);
    EXPECT_EQ(trustingly(secure.url()), refused);
    // Not on the second hop either.
    ScriptedServer door(
        [&](const QByteArray &) { return movedTo(secure.url().toEncoded(), "302"); });
    EXPECT_EQ(trustingly(door.url()), refused);
    EXPECT_EQ(plain.requests().size(), 1);
}

TEST_F(CurlHttpClientTest, TakesHeadersAndCredentialsToNoOtherHostAndTakesNoneFromARedirect)
{
    ScriptedServer other([](const QByteArray &) { return ScriptedServer::reply("200 OK", "end"); });
    QList<QUrl> targets;
    ScriptedServer server([&](const QByteArray &) {
        QUrl target = targets.takeFirst();
        target.setUserInfo(u"mallory:knows"_s);
        return movedTo(target.toEncoded());
    });
    for (const auto &[userInfo, pair] : Table<QString, QByteArray>{
             {u""_s, ""},
             {u"user:secret"_s, "user:secret"},
             {u"user"_s, "user:"},
             {u":secret"_s, ":secret"},
             {u"us%40er:%C3%A4:%0D%0AX-Evil"_s, "us@er:\xC3\xA4:\r\nX-Evil"},
         }) {
        SCOPED_TRACE(userInfo.toStdString());
        targets = {server.url(u"/again"_s), other.url()};
        QUrl url = server.url();
        url.setUserInfo(userInfo, QUrl::TolerantMode);
        HttpRequest request = post(url, "{}");
        request.headers += HttpHeader{"X-Token", "secret"};
        EXPECT_EQ(ask(request), "200 end");
        for (const QByteArray &received : server.requests().last(2)) {
            EXPECT_TRUE(received.contains("X-Token"));
            EXPECT_EQ(received.count("Authorization"), pair.isEmpty() ? 0 : 1);
            EXPECT_TRUE(pair.isEmpty() ||
                        received.contains("\r\nAuthorization: Basic " + pair.toBase64() + "\r\n"));
            EXPECT_FALSE(received.left(received.indexOf('\r')).contains('@'));
        }
        EXPECT_FALSE(other.requests().last().contains("X-Token"));
        EXPECT_FALSE(other.requests().last().contains("Authorization"));
        EXPECT_TRUE(other.requests().last().contains("Content-Type"));
    }
}

TEST_F(CurlHttpClientTest, BoundsAndDistrustsTheReply)
{
    const QByteArray most(CurlRequest::maximumReplySize, 'x');
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray lost = textOf(HttpError::Unreachable);
    for (const auto &[answer, outcome] : Table<Answer, QByteArray>{
             {ScriptedServer::reply("200 OK", most), "200 " + most},
             {{ok + "Content-Length: 4194305\r\n\r\n"}, textOf(HttpError::TooLarge)},
             {{ok + "\r\n" + most + "x", Answer::Close}, textOf(HttpError::TooLarge)},
             {{"", Answer::Abort}, lost},
             {{ok + "Content-Length: 100\r\n\r\nhalf", Answer::Close}, lost},
             {{ok + "Transfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n", Answer::Close}, lost},
             {{"this is no HTTP at all\r\n\r\n", Answer::Close}, lost},
         }) {
        ScriptedServer server([&answer](const QByteArray &) { return answer; });
        EXPECT_TRUE(ask(get(server.url())) == outcome) << answer.bytes.left(80).constData();
    }
    QUrl closed;
    {
        const ScriptedServer server([](const QByteArray &) { return Answer{}; });
        closed = server.url();
    }
    EXPECT_EQ(ask(get(closed)), textOf(HttpError::Unreachable));
    EXPECT_FALSE(m_client->isActive());
}

TEST_F(CurlHttpClientTest, BoundsTheWholeRequestRedirectsIncluded)
{
    ScriptedServer server([](const QByteArray &request) -> Answer {
        if (pathOf(request) == "/moved") {
            return movedTo("/silent");
        }
        // The server sends the headers without the body, or nothing at all.
        return {pathOf(request) == "/half" ? "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nx" : ""};
    });
    for (const QString &path : {u"/silent"_s, u"/half"_s, u"/moved"_s}) {
        EXPECT_EQ(ask(get(server.url(path), 60ms)), textOf(HttpError::TimedOut))
            << path.toStdString();
    }
    EXPECT_EQ(ask(get(server.url(), 0ms)), textOf(HttpError::TimedOut));
    EXPECT_FALSE(m_client->isActive());
}

TEST_F(CurlHttpClientTest, AnswersEachOfManyAtOnceAndCancelsTheRestWhenItGoes)
{
    ScriptedServer server([](const QByteArray &request) {
        const QByteArray path = pathOf(request);
        return path == "/silent" ? Answer{} : ScriptedServer::reply("200 OK", path);
    });
    const Pending silent = m_client->send(get(server.url(u"/silent"_s)));
    QList<Pending> pending;
    for (int index = 0; index < 20; ++index) {
        pending.append(m_client->send(get(server.url(u"/%1"_s.arg(index)))));
    }
    for (int index = 0; index < 20; ++index) {
        ASSERT_TRUE(waitUntil([&] { return pending.at(index).await_ready(); }));
        EXPECT_EQ(textOf(pending.at(index).await_resume()), "200 /" + QByteArray::number(index));
    }
    EXPECT_FALSE(silent.await_ready());
    const Pending refused = m_client->send(get(QUrl()));
    m_client.reset();
    ASSERT_TRUE(silent.await_ready() && refused.await_ready());
    EXPECT_EQ(textOf(silent.await_resume()), textOf(HttpError::Cancelled));
    EXPECT_EQ(textOf(refused.await_resume()), textOf(HttpError::BadUrl));
}

TEST_F(CurlHttpClientTest, OpensFewConnectionsHoweverManyRequestsWait)
{
    std::optional<ScriptedServer> silent([](const QByteArray &) { return Answer{}; });
    ScriptedServer other([](const QByteArray &) { return ScriptedServer::reply("200 OK", ""); });
    for (int index = 0; index < 16; ++index) {
        m_client->send(get(silent->url()));
    }
    EXPECT_TRUE(waitUntil([&] { return silent->connections() == 16; }));
    // A further request waits for a connection, though no longer than its own time limit.
    EXPECT_EQ(ask(get(other.url(), 60ms)), textOf(HttpError::TimedOut));
    const Pending waiting = m_client->send(get(other.url()));
    EXPECT_EQ(other.connections(), 0);
    silent.reset();
    EXPECT_EQ(textOf(resultOf(waiting)), "200 ");
}

TEST_F(CurlHttpClientTest, MayBeUsedAndDestroyedByItsOwnAnswers)
{
    ScriptedServer server([](const QByteArray &request) {
        return pathOf(request) == "/silent" ? Answer{} : ScriptedServer::reply("200 OK", "x");
    });
    QList<QByteArray> results;
    const auto askTwice = [](std::unique_ptr<CurlHttpClient> &client, QUrl url,
                             QList<QByteArray> &into, bool destroys) -> Detached {
        CurlHttpClient &used = *client;
        auto first = used.send(get(url));
        into.append(textOf(co_await first));
        // A request that is sent when another was cancelled must resolve, not hang.
        auto second = used.send(get(url));
        into.append(textOf(co_await second));
        if (destroys) {
            client.reset();
        }
    };
    askTwice(m_client, server.url(u"/silent"_s), results, false);
    askTwice(m_client, server.url(), results, true);
    ASSERT_TRUE(waitUntil([&] { return results.size() == 4; }));
    const QByteArray cancelled = textOf(HttpError::Cancelled);
    EXPECT_EQ(results, (QList<QByteArray>{"200 x", "200 x", cancelled, cancelled}));
}

} // namespace
} // namespace corvane::tests
