#pragma once

#include <QByteArray>
#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <utility>

namespace corvane::tests {

/// A local HTTP server that replies to each request with the bytes that the test provides.
class ScriptedServer final : public QTcpServer
{
public:
    struct Answer
    {
        QByteArray bytes;
        enum Then { Keep, Close, Abort } then = Keep;
    };
    using Script = std::function<Answer(const QByteArray &request)>;

    /// Uses TLS if `certificate` is not empty: a self-signed certificate and its key in PEM format.
    explicit ScriptedServer(Script script, QByteArray certificate = {})
        : m_script(std::move(script))
        , m_certificate(std::move(certificate))
    {
        connect(this, &QTcpServer::newConnection, this, &ScriptedServer::accept);
        listen(QHostAddress::LocalHost);
    }

    [[nodiscard]] QUrl url(const QString &path = QStringLiteral("/")) const
    {
        const auto scheme =
            m_certificate.isEmpty() ? QStringLiteral("http") : QStringLiteral("https");
        return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(serverPort()).arg(path));
    }
    /// The raw requests so far.
    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }
    [[nodiscard]] int connections() const { return m_connections; }

    [[nodiscard]] static Answer reply(const QByteArray &status, const QByteArray &body,
                                      const QByteArray &headers = {})
    {
        return {"HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                    "\r\n" + headers + "\r\n" + body,
                Answer::Keep};
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (m_certificate.isEmpty()) {
            QTcpServer::incomingConnection(descriptor);
            return;
        }
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setLocalCertificate(QSslCertificate(m_certificate));
        socket->setPrivateKey(QSslKey(m_certificate, QSsl::Ec));
        socket->startServerEncryption();
        addPendingConnection(socket);
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
    QByteArray m_certificate;
    QList<QByteArray> m_requests;
    int m_connections = 0;
};

} // namespace corvane::tests
