#include "platform/linux/network/network_messages.h"

#include <QDataStream>
#include <QIODevice>

#include <chrono>
#include <utility>

namespace corvane::platform {

namespace {

/// The first byte of each message. Changes with the format: the program may be replaced by an
/// upgrade before it starts its network process.
constexpr quint8 formatVersion = 1;
/// Longer than any request needs.
constexpr std::chrono::milliseconds maximumTimeout = std::chrono::minutes(10);
constexpr quint8 maximumHeaders = 32;

/// What follows the number of an answer.
enum class AnswerKind : quint8 { Reply, Error };

void setUp(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_6_0);
}

/// True if the whole message has been read, and nothing was missing.
bool isComplete(const QDataStream &stream)
{
    return stream.status() == QDataStream::Ok && stream.atEnd();
}

bool readVersion(QDataStream &stream)
{
    quint8 version = 0;
    stream >> version;
    return version == formatVersion;
}

} // namespace

QByteArray encoded(const NetworkRequest &request)
{
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    setUp(stream);
    const HttpRequest &http = request.request;
    stream << formatVersion << quint32{request.id} << (http.method == HttpMethod::Post)
           << http.url.toEncoded() << http.body << static_cast<qint64>(http.timeout.count())
           << http.once << static_cast<quint8>(http.headers.size());
    for (const HttpHeader &header : http.headers) {
        stream << header.name << header.value;
    }
    return message;
}

QByteArray encoded(const NetworkAnswer &answer)
{
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    setUp(stream);
    stream << formatVersion << quint32{answer.id};
    if (const auto *reply = std::get_if<HttpReply>(&answer.result)) {
        stream << static_cast<quint8>(AnswerKind::Reply) << qint32{reply->status} << reply->body;
    } else {
        stream << static_cast<quint8>(AnswerKind::Error)
               << static_cast<quint8>(std::get<HttpError>(answer.result));
    }
    return message;
}

std::optional<NetworkRequest> decodedRequest(const QByteArray &message)
{
    QDataStream stream(message);
    setUp(stream);
    if (!readVersion(stream)) {
        return std::nullopt;
    }
    NetworkRequest read;
    bool posts = false;
    QByteArray url;
    qint64 timeout = 0;
    quint8 headers = 0;
    stream >> read.id >> posts >> url >> read.request.body >> timeout >> read.request.once >>
        headers;
    if (headers > maximumHeaders || timeout < 0 || timeout > maximumTimeout.count()) {
        return std::nullopt;
    }
    for (quint8 index = 0; index < headers; ++index) {
        HttpHeader &header = read.request.headers.emplaceBack();
        stream >> header.name >> header.value;
    }
    read.request.method = posts ? HttpMethod::Post : HttpMethod::Get;
    read.request.url = QUrl::fromEncoded(url, QUrl::StrictMode);
    read.request.timeout = std::chrono::milliseconds(timeout);
    return isComplete(stream) ? std::optional(std::move(read)) : std::nullopt;
}

std::optional<NetworkAnswer> decodedAnswer(const QByteArray &message)
{
    QDataStream stream(message);
    setUp(stream);
    if (!readVersion(stream)) {
        return std::nullopt;
    }
    NetworkAnswer read;
    quint8 kind = 0;
    stream >> read.id >> kind;
    if (kind == static_cast<quint8>(AnswerKind::Reply)) {
        HttpReply reply;
        qint32 status = 0;
        stream >> status >> reply.body;
        reply.status = status;
        read.result = std::move(reply);
    } else {
        quint8 error = 0;
        stream >> error;
        if (kind != static_cast<quint8>(AnswerKind::Error) ||
            error > static_cast<quint8>(HttpError::Cancelled)) {
            return std::nullopt;
        }
        read.result = static_cast<HttpError>(error);
    }
    return isComplete(stream) ? std::optional(std::move(read)) : std::nullopt;
}

} // namespace corvane::platform
