#pragma once

#include "platform/http_client.h"

#include <QCoroTask>

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <variant>

namespace corvane::core {

/// Why a call failed although the HTTP request succeeded or was not needed.
enum class CallError {
    BadUrl,            ///< the URL is invalid
    NotSerialisable,   ///< a parameter is not a JSON value; nothing was sent
    NotJson,           ///< the reply is not valid JSON
    BadServerResponse, ///< the reply is neither a JSON-RPC result nor a refusal
    Refused,           ///< the cluster's reply is a JSON-RPC error: it has not executed the call
};

/// A call's JSON value, or the HTTP error, or the call error.
using JsonResult = std::variant<QJsonValue, platform::HttpError, CallError>;

/// The time limit of a call.
inline constexpr std::chrono::seconds callTimeout{12};

/// A JSON-RPC 2.0 request; empty if a parameter is not a JSON value (JSON has no infinity and no
/// not-a-number). A transfer is never sent twice.
[[nodiscard]] std::optional<platform::HttpRequest>
rpcRequest(const QUrl &url, const QString &method, const QJsonArray &params,
           std::chrono::milliseconds timeout = callTimeout);
/// Makes a JSON-RPC call. `http` must outlive the call, not the task.
QCoro::Task<JsonResult> callRpc(platform::HttpClient &http, QUrl url, QString method,
                                QJsonArray params, std::chrono::milliseconds timeout = callTimeout);
/// A request that checks whether an RPC proxy works, with a time limit of 8 s.
[[nodiscard]] platform::HttpRequest healthRequest(const QUrl &url);
/// A GET request for a JSON document, with a time limit of 12 s; empty if the URL is invalid.
[[nodiscard]] std::optional<platform::HttpRequest> jsonRequest(const QString &url);

/// The `result` of a JSON-RPC reply, which may be null, whatever the HTTP status. An error reply
/// with a server-error status is not a refusal, because a gateway may have passed the call on.
[[nodiscard]] JsonResult readRpcReply(const platform::HttpResult &result);
/// The document in a JSON reply. Ignores the HTTP status.
[[nodiscard]] JsonResult readJsonReply(const platform::HttpResult &result);
/// True for status 200 with any JSON body.
[[nodiscard]] bool isHealthy(const platform::HttpResult &result);

} // namespace corvane::core
