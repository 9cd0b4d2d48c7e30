#include "core/json_calls.h"

#include "core/json.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace corvane::core {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds healthTimeout = 8s;

bool isSerialisable(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Double:
        return std::isfinite(value.toDouble());
    case QJsonValue::Array:
        return std::ranges::all_of(value.toArray(), isSerialisable);
    case QJsonValue::Object:
        return std::ranges::all_of(value.toObject(), isSerialisable);
    case QJsonValue::Undefined:
        return false;
    default:
        return true;
    }
}

QJsonObject envelope(const QString &method)
{
    return {{u"jsonrpc"_s, u"2.0"_s}, {u"id"_s, 1}, {u"method"_s, method}};
}

platform::HttpRequest post(const QUrl &url, const QJsonObject &body,
                           std::chrono::milliseconds timeout)
{
    return {
        .method = platform::HttpMethod::Post,
        .url = url,
        .headers = {{QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json")}},
        .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
        .timeout = timeout,
    };
}

} // namespace

std::optional<platform::HttpRequest> rpcRequest(const QUrl &url, const QString &method,
                                                const QJsonArray &params,
                                                std::chrono::milliseconds timeout)
{
    if (!isSerialisable(params)) {
        return std::nullopt;
    }
    QJsonObject body = envelope(method);
    body.insert(u"params"_s, params);
    platform::HttpRequest request = post(url, body, timeout);
    request.once = method == u"sendTransaction";
    return request;
}

QCoro::Task<JsonResult> callRpc(platform::HttpClient &http, QUrl url, QString method,
                                QJsonArray params, std::chrono::milliseconds timeout)
{
    std::optional<platform::HttpRequest> request = rpcRequest(url, method, params, timeout);
    if (!request) {
        co_return JsonResult(CallError::NotSerialisable);
    }
    const auto pending = http.send(*std::move(request));
    const platform::HttpResult result = co_await pending;
    co_return readRpcReply(result);
}

platform::HttpRequest healthRequest(const QUrl &url)
{
    return post(url, envelope(u"getHealth"_s), healthTimeout);
}

std::optional<platform::HttpRequest> jsonRequest(const QString &url)
{
    const QUrl parsed(url, QUrl::StrictMode);
    if (!parsed.isValid() || parsed.isEmpty()) {
        return std::nullopt;
    }
    return platform::HttpRequest{.method = platform::HttpMethod::Get,
                                 .url = parsed,
                                 .headers = {},
                                 .body = {},
                                 .timeout = callTimeout};
}

JsonResult readRpcReply(const platform::HttpResult &result)
{
    JsonResult document = readJsonReply(result);
    const auto *value = std::get_if<QJsonValue>(&document);
    if (value == nullptr) {
        return document;
    }
    const QJsonObject object = value->toObject();
    if (const auto member = object.find("result"_L1); member != object.end()) {
        return QJsonValue(member.value());
    }
    constexpr int firstServerError = 500;
    const bool refused = object["error"_L1]["code"_L1].isDouble() &&
                         std::get<platform::HttpReply>(result).status < firstServerError;
    return refused ? CallError::Refused : CallError::BadServerResponse;
}

JsonResult readJsonReply(const platform::HttpResult &result)
{
    const auto *reply = std::get_if<platform::HttpReply>(&result);
    if (reply == nullptr) {
        return std::get<platform::HttpError>(result);
    }
    if (std::optional<QJsonValue> document = parseJson(reply->body)) {
        return *std::move(document);
    }
    return CallError::NotJson;
}

bool isHealthy(const platform::HttpResult &result)
{
    const auto *reply = std::get_if<platform::HttpReply>(&result);
    return reply != nullptr && reply->status == 200 && parseJson(reply->body).has_value();
}

} // namespace corvane::core
