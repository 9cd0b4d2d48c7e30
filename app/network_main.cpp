#include "platform/linux/http/curl_http_client.h"
#include "platform/linux/network/network_server.h"
#include "platform/linux/process/process_hardening.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

#include <sys/prctl.h>
#include <sys/socket.h>

namespace {

/// Where the program that starts this one leaves the socket.
constexpr int serverSocket = 3;

bool isSocket(int descriptor)
{
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

} // namespace

/// corvane-net: the process that sends Corvane's HTTP requests.
int main(int argc, char *argv[])
{
    using namespace corvane;
    if (!isSocket(serverSocket)) {
        std::fputs("corvane-net is started by corvane\n", stderr);
        return 1;
    }
    // The end of the program also closes the socket; this ends a process that does not read it.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!platform::hardenProcess()) {
        return 1;
    }
    QCoreApplication::setApplicationName(QStringLiteral("corvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    const QCoreApplication application(argc, argv);
    platform::CurlHttpClient http;
    const platform::NetworkServer server(serverSocket, http, [] { QCoreApplication::exit(); });
    return QCoreApplication::exec();
}
