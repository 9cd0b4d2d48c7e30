#pragma once

#include "platform/http_client.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace corvane::core {

/// Why a call failed although the transport did its part.
enum class CallError {
    BadUrl,            ///< the address does not parse
    NotSerialisable,   ///< a parameter is not a JSON value; nothing was sent
    NotJson,           ///< the reply does not parse
    BadServerResponse, ///< the reply is no JSON-RPC result
};

/// A call's JSON value, or the transport's failure as it came, or ours.
using JsonResult = std::variant<QJsonValue, platform::HttpError, CallError>;

/// A JSON-RPC 2.0 call, bounded to 12 s; none when a parameter is not a JSON value (JSON has no
/// infinity and no not-a-number). A transfer goes out once.
[[nodiscard]] std::optional<platform::HttpRequest>
rpcRequest(const QUrl &url, const QString &method, const QJsonArray &params);
/// The question whether an RPC proxy works, bounded to 8 s.
[[nodiscard]] platform::HttpRequest healthRequest(const QUrl &url);
/// A plain GET of a JSON document, bounded to 12 s; none when the address does not parse.
[[nodiscard]] std::optional<platform::HttpRequest> jsonRequest(const QString &url);

/// The `result` of a JSON-RPC reply, null included. The HTTP status is not looked at.
[[nodiscard]] JsonResult readRpcReply(const platform::HttpResult &result);
/// The document of a JSON reply. The HTTP status is not looked at.
[[nodiscard]] JsonResult readJsonReply(const platform::HttpResult &result);
/// True for status 200 with a JSON body, whatever it says.
[[nodiscard]] bool isHealthy(const platform::HttpResult &result);

} // namespace corvane::core
