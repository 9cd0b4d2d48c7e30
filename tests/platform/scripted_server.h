#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <utility>

namespace corvane::tests {

/// An HTTP server on this machine that answers each request with the bytes a test gives it.
class ScriptedServer final : public QTcpServer
{
public:
    struct Answer
    {
        QByteArray bytes;
        enum Then { Keep, Close, Abort } then = Keep;
    };
    using Script = std::function<Answer(const QByteArray &request)>;

    explicit ScriptedServer(Script script)
        : m_script(std::move(script))
    {
        connect(this, &QTcpServer::newConnection, this, &ScriptedServer::accept);
        listen(QHostAddress::LocalHost);
    }

    [[nodiscard]] QUrl url(const QString &path = QStringLiteral("/")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
    }
    /// The requests so far, as they came.
    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }
    [[nodiscard]] int connections() const { return m_connections; }

    [[nodiscard]] static Answer reply(const QByteArray &status, const QByteArray &body,
                                      const QByteArray &headers = {})
    {
        return {"HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                    "\r\n" + headers + "\r\n" + body,
                Answer::Keep};
    }

private:
    void accept()
    {
        while (QTcpSocket *socket = nextPendingConnection()) {
            ++m_connections;
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
        }
    }

    void read(QTcpSocket &socket)
    {
        const QByteArray received = socket.property("received").toByteArray() + socket.readAll();
        socket.setProperty("received", received);
        const qsizetype end = received.indexOf("\r\n\r\n");
        if (end < 0) {
            return;
        }
        const qsizetype length = received.toLower().indexOf("\r\ncontent-length: ");
        const qsizetype body =
            length < 0 || length > end ? 0 : received.mid(length + 18).split('\r').first().toInt();
        if (received.size() < end + 4 + body) {
            return;
        }
        socket.setProperty("received", QByteArray());
        m_requests.append(received);
        const Answer answer = m_script(received);
        socket.write(answer.bytes);
        if (answer.then == Answer::Close) {
            socket.disconnectFromHost();
        } else if (answer.then == Answer::Abort) {
            socket.abort();
        }
    }

    Script m_script;
    QList<QByteArray> m_requests;
    int m_connections = 0;
};

} // namespace corvane::tests
