#include "tests/platform/wait_until.h"
#include "tests/platform/x11_display.h"

#include <QGuiApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

using corvane::tests::waitUntil;
using corvane::tests::X11Display;

/// True if the window manager manages a new window. It may miss windows that are mapped while it
/// starts, so several are tried.
bool managesWindows()
{
    return waitUntil([] {
        X11Display display;
        const auto window = display.makeWindow(QRect(0, 0, 50, 50), X11Display::Kind::Managed);
        return waitUntil([&] { return display.hasProperty(window, "WM_STATE"); },
                         std::chrono::milliseconds(250));
    });
}

} // namespace

// Runs on a separate display (xvfb-run), with a window manager that it starts.
int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "xcb");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    QProcess manager;
    manager.setProcessEnvironment(environment);
    manager.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    manager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    if (!managesWindows()) {
        std::fputs("the window manager openbox does not start\n", stderr);
        return 1;
    }
    const int result = RUN_ALL_TESTS();
    manager.terminate();
    manager.waitForFinished(-1);
    return result;
}
