#include "platform/linux/curl_http_client.h"

#include "platform/linux/http_redirect.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QSocketNotifier>
#include <QTimer>

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <unordered_map>
#include <utility>

// QUICK_EXIT came with it, and writes that cannot raise SIGPIPE.
#if LIBCURL_VERSION_NUM < 0x075700
#error "libcurl 7.87 or newer is needed"
#endif

namespace corvane::platform {

namespace {

using Clock = std::chrono::steady_clock;

/// Connections kept open for the next refresh, and for how many seconds.
constexpr long keptConnections = 4;
constexpr long keptConnectionAge = 90;

struct FreeEasy
{
    void operator()(CURL *easy) const { curl_easy_cleanup(easy); }
};

struct FreeList
{
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};

using HeaderList = std::unique_ptr<curl_slist, FreeList>;

/// One request on its way, redirects included.
struct Transfer
{
    HttpRequest request;
    Completion<HttpResult> completion;
    Clock::time_point deadline;
    QUrl url;
    HttpMethod method = HttpMethod::Get;
    int redirects = 0;
    QByteArray received;
    bool tooLarge = false;
    HeaderList headers;
    std::unique_ptr<CURL, FreeEasy> easy;
};

void append(HeaderList &list, const QByteArray &line)
{
    // A line break would begin another header.
    if (line.contains('\r') || line.contains('\n')) {
        return;
    }
    if (curl_slist *longer = curl_slist_append(list.get(), line.constData())) {
        static_cast<void>(list.release());
        list.reset(longer);
    }
}

bool isNamed(const HttpHeader &header, QByteArrayView name)
{
    return header.name.compare(name, Qt::CaseInsensitive) == 0;
}

HeaderList headerLines(const Transfer &transfer)
{
    HeaderList list;
    const bool posts = transfer.method == HttpMethod::Post;
    // curl would wait for the server's permission before it sends a large body, and name a type
    // that nobody asked for.
    append(list, "Expect:");
    const auto &headers = transfer.request.headers;
    if (posts && std::none_of(headers.begin(), headers.end(), [](const HttpHeader &header) {
            return isNamed(header, "Content-Type");
        })) {
        append(list, "Content-Type:");
    }
    for (const HttpHeader &header : headers) {
        const bool describesBody = isNamed(header, "Content-Type");
        // A POST that a redirect turned into a GET has no body any more.
        if (describesBody && !posts && transfer.redirects > 0) {
            continue;
        }
        append(list,
               header.value.isEmpty() ? header.name + ';' : header.name + ": " + header.value);
    }
    return list;
}

/// Some public services refuse requests that do not say who is asking.
QByteArray userAgent()
{
    const QByteArray version = QCoreApplication::applicationVersion().toUtf8();
    return version.isEmpty() ? QByteArrayLiteral("Corvane") : "Corvane/" + version;
}

size_t onBody(char *data, size_t size, size_t count, void *context)
{
    auto &transfer = *static_cast<Transfer *>(context);
    const auto length = static_cast<qsizetype>(size * count);
    if (transfer.received.size() + length > CurlHttpClient::maximumReplySize) {
        transfer.tooLarge = true;
        return 0;
    }
    transfer.received.append(data, length);
    return size * count;
}

HttpError errorOf(CURLcode code, const Transfer &transfer)
{
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return HttpError::TimedOut;
    case CURLE_FILESIZE_EXCEEDED:
        return HttpError::TooLarge;
    case CURLE_URL_MALFORMAT:
        return transfer.redirects > 0 ? HttpError::RefusedRedirect : HttpError::BadUrl;
    default:
        return transfer.tooLarge ? HttpError::TooLarge : HttpError::Unreachable;
    }
}

} // namespace

/// Drives curl's sockets and its one timer by the event loop.
///
/// Results are handed over from a queued event of the application's, never while curl or one of
/// the notifiers is at work: a waiter may send again, or destroy the client.
class CurlHttpClient::Engine final : public QObject, public std::enable_shared_from_this<Engine>
{
public:
    Engine();
    ~Engine() override;

    Completion<HttpResult> send(HttpRequest request);
    void shutDown();
    [[nodiscard]] bool isActive() const { return !m_transfers.empty() || m_timer.isActive(); }

private:
    struct Watch
    {
        QSocketNotifier *read = nullptr;
        QSocketNotifier *write = nullptr;
    };

    static int onSocket(CURL *easy, curl_socket_t socket, int what, void *context, void *);
    static int onTimeout(CURLM *multi, long milliseconds, void *context);

    bool initialise();
    [[nodiscard]] bool start(Transfer &transfer);
    void act(curl_socket_t socket, int events);
    void collect();
    void conclude(CURL *easy, CURLcode code);
    void finish(Completion<HttpResult> completion, HttpResult result);
    void deliver();
    void watch(QSocketNotifier *&notifier, curl_socket_t socket, QSocketNotifier::Type type,
               bool wanted);

    CURLM *m_multi = nullptr;
    bool m_shutDown = false;
    QTimer m_timer;
    std::unordered_map<curl_socket_t, Watch> m_watches;
    std::unordered_map<CURL *, std::unique_ptr<Transfer>> m_transfers;
    std::deque<std::pair<Completion<HttpResult>, HttpResult>> m_finished;
};

CurlHttpClient::Engine::Engine()
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
}

CurlHttpClient::Engine::~Engine()
{
    if (m_multi != nullptr) {
        curl_multi_cleanup(m_multi);
    }
}

bool CurlHttpClient::Engine::initialise()
{
    if (m_multi != nullptr) {
        return true;
    }
    static const bool global = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!global || (m_multi = curl_multi_init()) == nullptr) {
        return false;
    }
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &Engine::onSocket);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &Engine::onTimeout);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, keptConnections);
    return true;
}

Completion<HttpResult> CurlHttpClient::Engine::send(HttpRequest request)
{
    Completion<HttpResult> completion;
    if (m_shutDown) {
        // Somebody whose request has just been cancelled tries again; there is no later any more.
        completion.resolve(HttpError::Cancelled);
        return completion;
    }
    if (!isHttpUrl(request.url)) {
        finish(completion, HttpError::BadUrl);
        return completion;
    }
    auto transfer = std::make_unique<Transfer>();
    transfer->deadline = Clock::now() + request.timeout;
    transfer->url = request.url;
    transfer->method = request.method;
    transfer->completion = completion;
    transfer->request = std::move(request);
    if (!initialise()) {
        finish(completion, HttpError::Unreachable);
        return completion;
    }
    transfer->easy.reset(curl_easy_init());
    if (!transfer->easy || !start(*transfer)) {
        finish(completion, HttpError::Unreachable);
        return completion;
    }
    m_transfers.emplace(transfer->easy.get(), std::move(transfer));
    return completion;
}

/// Starts the transfer's first or next request. False when curl refuses.
bool CurlHttpClient::Engine::start(Transfer &transfer)
{
    CURL *easy = transfer.easy.get();
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(transfer.deadline - Clock::now());
    transfer.headers = headerLines(transfer);
    transfer.received.clear();

    curl_easy_reset(easy);
    curl_easy_setopt(
        easy, CURLOPT_URL,
        transfer.url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment).constData());
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, userAgent().constData());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, transfer.headers.get());
    if (transfer.method == HttpMethod::Post) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(transfer.request.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, transfer.request.body.constData());
    }
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumReplySize));
    // Zero would mean no bound at all.
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, std::max(static_cast<long>(left.count()), 1L));
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, keptConnectionAge);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // Without this, a name that does not resolve would block the main thread beyond the bound.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    return curl_multi_add_handle(m_multi, easy) == CURLM_OK;
}

int CurlHttpClient::Engine::onTimeout(CURLM *, long milliseconds, void *context)
{
    QTimer &timer = static_cast<Engine *>(context)->m_timer;
    if (milliseconds < 0) {
        timer.stop();
    } else {
        timer.start(std::chrono::milliseconds(milliseconds));
    }
    return 0;
}

int CurlHttpClient::Engine::onSocket(CURL *, curl_socket_t socket, int what, void *context, void *)
{
    auto &engine = *static_cast<Engine *>(context);
    Watch &watch = engine.m_watches[socket];
    engine.watch(watch.read, socket, QSocketNotifier::Read,
                 what == CURL_POLL_IN || what == CURL_POLL_INOUT);
    engine.watch(watch.write, socket, QSocketNotifier::Write,
                 what == CURL_POLL_OUT || what == CURL_POLL_INOUT);
    if (what == CURL_POLL_REMOVE) {
        engine.m_watches.erase(socket);
    }
    return 0;
}

void CurlHttpClient::Engine::watch(QSocketNotifier *&notifier, curl_socket_t socket,
                                   QSocketNotifier::Type type, bool wanted)
{
    if (wanted == (notifier != nullptr)) {
        return;
    }
    if (wanted) {
        notifier = new QSocketNotifier(socket, type, this);
        const int event = type == QSocketNotifier::Read ? CURL_CSELECT_IN : CURL_CSELECT_OUT;
        connect(notifier, &QSocketNotifier::activated, this,
                [this, socket, event] { act(socket, event); });
        return;
    }
    // It may be the one that is telling us.
    notifier->setEnabled(false);
    notifier->deleteLater();
    notifier = nullptr;
}

void CurlHttpClient::Engine::act(curl_socket_t socket, int events)
{
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    collect();
}

void CurlHttpClient::Engine::collect()
{
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg == CURLMSG_DONE) {
            conclude(message->easy_handle, message->data.result);
        }
    }
}

void CurlHttpClient::Engine::conclude(CURL *easy, CURLcode code)
{
    curl_multi_remove_handle(m_multi, easy);
    const auto found = m_transfers.find(easy);
    if (found == m_transfers.end()) {
        return;
    }
    Transfer &transfer = *found->second;
    HttpResult result = HttpError::Unreachable;
    if (code != CURLE_OK) {
        result = errorOf(code, transfer);
    } else {
        long status = 0;
        curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
        const char *location = nullptr;
        curl_easy_getinfo(easy, CURLINFO_REDIRECT_URL, &location);
        if (location != nullptr && isRedirect(static_cast<int>(status))) {
            const QUrl target = QUrl::fromEncoded(location);
            if (transfer.redirects == maximumRedirects || !mayRedirect(transfer.url, target)) {
                result = HttpError::RefusedRedirect;
            } else if (Clock::now() >= transfer.deadline) {
                result = HttpError::TimedOut;
            } else {
                ++transfer.redirects;
                transfer.method = methodAfterRedirect(transfer.method, static_cast<int>(status));
                transfer.url = target;
                if (start(transfer)) {
                    return;
                }
            }
        } else {
            result = HttpReply{static_cast<int>(status), std::move(transfer.received)};
        }
    }
    finish(transfer.completion, std::move(result));
    m_transfers.erase(found);
}

void CurlHttpClient::Engine::finish(Completion<HttpResult> completion, HttpResult result)
{
    m_finished.emplace_back(std::move(completion), std::move(result));
    if (m_finished.size() > 1) {
        return;
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [weak = weak_from_this()] {
            if (const auto engine = weak.lock()) {
                engine->deliver();
            }
        },
        Qt::QueuedConnection);
}

void CurlHttpClient::Engine::deliver()
{
    while (!m_finished.empty()) {
        auto [completion, result] = std::move(m_finished.front());
        m_finished.pop_front();
        completion.resolve(std::move(result));
    }
}

void CurlHttpClient::Engine::shutDown()
{
    m_shutDown = true;
    m_timer.stop();
    const auto transfers = std::exchange(m_transfers, {});
    for (const auto &[easy, transfer] : transfers) {
        curl_multi_remove_handle(m_multi, easy);
        m_finished.emplace_back(transfer->completion, HttpError::Cancelled);
    }
    deliver();
}

CurlHttpClient::CurlHttpClient()
    : m_engine(std::make_shared<Engine>())
{}

CurlHttpClient::~CurlHttpClient()
{
    m_engine->shutDown();
}

Completion<HttpResult> CurlHttpClient::send(HttpRequest request)
{
    return m_engine->send(std::move(request));
}

bool CurlHttpClient::isActive() const
{
    return m_engine->isActive();
}

} // namespace corvane::platform
