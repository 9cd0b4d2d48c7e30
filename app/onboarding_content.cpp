#include "app/onboarding_content.h"

#include "assets/bundled_fonts.h"

#include <QQmlComponent>
#include <QQuickItem>

namespace corvane::app {

std::unique_ptr<QQuickItem> makeOnboardingView(QQmlEngine &engine,
                                               onboarding::Onboarding &onboarding)
{
    // At launch the tour may be shown before the island's first frame, after which they are
    // otherwise loaded.
    assets::registerBundledFonts();
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
