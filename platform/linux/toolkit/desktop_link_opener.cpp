#include "platform/linux/toolkit/desktop_link_opener.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QProcess>

#include <chrono>

namespace corvane::platform {

using namespace std::chrono_literals;

namespace {

/// xdg-open may run until a browser ends that it has started itself. A status that comes later is
/// the end of that browser.
constexpr std::chrono::milliseconds openingTakes = 10s;

} // namespace

void DesktopLinkOpener::open(const QUrl &page, std::function<void()> failed)
{
    if (page.scheme() != QStringLiteral("https") && page.scheme() != QStringLiteral("http")) {
        return;
    }
    // Qt starts xdg-open too, but does not tell how that ends. The object belongs to nobody,
    // because its destruction would end the process.
    auto *opener = new QProcess;
    opener->setStandardInputFile(QProcess::nullDevice());
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    QObject::connect(opener, &QProcess::finished, opener, [opener, timer, failed](int status) {
        opener->deleteLater();
        if (status != 0 && timer.elapsed() < openingTakes.count()) {
            failed();
        }
    });
    QObject::connect(opener, &QProcess::errorOccurred, opener,
                     [opener, page, failed](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart) {
                             return;
                         }
                         opener->deleteLater();
                         if (!QDesktopServices::openUrl(page)) {
                             failed();
                         }
                     });
    opener->start(QStringLiteral("xdg-open"), {page.toString(QUrl::FullyEncoded)});
}

} // namespace corvane::platform
