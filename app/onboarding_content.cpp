#include "app/onboarding_content.h"

#include "assets/bundled_fonts.h"
#include "look/paint/application_icon.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQmlComponent>
#include <QQuickItem>

namespace corvane::app {

namespace {

/// The icon for task bars and window switchers, also where the program is not installed.
QIcon windowIcon()
{
    QIcon icon;
    for (const look::ApplicationIcon &size : look::applicationIcons) {
        if (size.size <= 128) {
            icon.addPixmap(QPixmap::fromImage(look::paintApplicationIcon(size)));
        }
    }
    return icon;
}

} // namespace

std::unique_ptr<QQuickItem> makeOnboardingView(QQmlEngine &engine,
                                               onboarding::Onboarding &onboarding)
{
    // At launch the tour may be shown before the island's first frame, after which they are
    // otherwise loaded.
    assets::registerBundledFonts();
    // Only here, because the tour's window is the only one that task bars show.
    QGuiApplication::setWindowIcon(windowIcon());
    QQmlComponent component(
        &engine, QUrl(QStringLiteral("qrc:/qt/qml/Corvane/Onboarding/OnboardingView.qml")));
    std::unique_ptr<QQuickItem> view(
        qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{QStringLiteral("onboarding"), QVariant::fromValue(&onboarding)}})));
    if (!view) {
        qFatal("the onboarding's views do not load: %s", qPrintable(component.errorString()));
    }
    return view;
}

} // namespace corvane::app
