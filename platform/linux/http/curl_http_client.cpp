#include "platform/linux/http/curl_http_client.h"

#include "platform/linux/http/curl_request.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QSocketNotifier>
#include <QTimer>

#include <curl/curl.h>

#include <chrono>
#include <deque>
#include <unordered_map>
#include <utility>

namespace corvane::platform {

namespace {

/// Connections kept open for the next refresh.
constexpr long keptConnections = 4;
/// Connections at the same time; further requests wait for one, within their time limits. More than
/// the wallet needs, and few enough that servers that do not answer cannot exhaust the process's
/// file descriptors.
constexpr long mostConnections = 16;

/// True for an absolute http or https URL with a host.
bool isHttpUrl(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1StringView("http") ||
            url.scheme() == QLatin1StringView("https"));
}

} // namespace

/// Connects curl's sockets and its timer to the event loop.
///
/// Results are delivered from a queued event, never from a callback of curl or a notifier, because
/// the receiver may send another request or destroy the client.
class CurlHttpClient::Engine final : public QObject, public std::enable_shared_from_this<Engine>
{
public:
    Engine();
    ~Engine() override;

    Completion<HttpResult> send(HttpRequest request);
    void shutDown();
    [[nodiscard]] bool isActive() const { return !m_transfers.empty() || m_timer.isActive(); }

private:
    struct DeleteLater
    {
        void operator()(QTimer *timer) const
        {
            // It must not fire any more: its handle may be gone already.
            timer->stop();
            timer->deleteLater();
        }
    };

    struct Transfer
    {
        CurlRequest request;
        Completion<HttpResult> completion;
        /// curl applies its own time limit only once a request has a connection. Deleted later,
        /// because its signal ends the transfer.
        std::unique_ptr<QTimer, DeleteLater> limit{new QTimer};
    };

    struct Watch
    {
        QSocketNotifier *read = nullptr;
        QSocketNotifier *write = nullptr;
    };

    static int onSocket(CURL *easy, curl_socket_t socket, int what, void *context, void *);
    static int onTimeout(CURLM *multi, long milliseconds, void *context);

    bool initialise();
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
    m_multi = global ? curl_multi_init() : nullptr;
    if (m_multi == nullptr) {
        return false;
    }
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &Engine::onSocket);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &Engine::onTimeout);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, keptConnections);
    curl_multi_setopt(m_multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, mostConnections);
    return true;
}

Completion<HttpResult> CurlHttpClient::Engine::send(HttpRequest request)
{
    Completion<HttpResult> completion;
    if (m_shutDown) {
        // A receiver of a cancelled request tries again during the destruction: resolve
        // immediately, because no further event will be handled.
        completion.resolve(HttpError::Cancelled);
        return completion;
    }
    if (!isHttpUrl(request.url)) {
        finish(completion, HttpError::BadUrl);
        return completion;
    }
    if (!initialise()) {
        finish(completion, HttpError::Unreachable);
        return completion;
    }
    const std::chrono::milliseconds bound = request.timeout;
    auto transfer =
        std::make_unique<Transfer>(Transfer{CurlRequest(std::move(request)), completion});
    CurlRequest &prepared = transfer->request;
    if (!prepared.prepare() || curl_multi_add_handle(m_multi, prepared.handle()) != CURLM_OK) {
        finish(completion, HttpError::Unreachable);
        return completion;
    }
    QTimer &limit = *transfer->limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, this,
            [this, easy = prepared.handle()] { conclude(easy, CURLE_OPERATION_TIMEDOUT); });
    limit.start(bound);
    m_transfers.emplace(prepared.handle(), std::move(transfer));
    return completion;
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
    // Deleted later, because this may be a call from the notifier itself.
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
    finish(transfer.completion, transfer.request.conclude(code));
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
