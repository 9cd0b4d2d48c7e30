#pragma once

#include "assets/bundled_fonts.h"
#include "look/theme.h"
#include "tests/fakes/fake_font_registry.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace corvane::tests {

/// A window for one view at a time, with the program's fonts or with fallback fonts.
class ViewStage
{
public:
    explicit ViewStage(bool hasBundledFonts = true)
        : m_fonts(hasBundledFonts ? FakeFontRegistry::bundled() : FakeFontRegistry({}))
    {
        assets::registerBundledFonts();
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QObject::connect(&m_engine, &QQmlEngine::warnings, [](const QList<QQmlError> &warnings) {
            ADD_FAILURE() << warnings.first().toString().toStdString();
        });
    }

    /// Loads a view, such as "Panes/SendPane", replacing the previous one.
    QQuickItem &show(const QString &name, const QVariantMap &properties, const QSize &size)
    {
        QQmlComponent component(&m_engine,
                                QUrl(QStringLiteral("qrc:/qt/qml/Corvane/%1.qml").arg(name)));
        m_view.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
        if (!m_view) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        m_view->setParentItem(m_window.contentItem());
        m_window.resize(size);
        m_window.setColor(Qt::black);
        m_window.show();
        m_window.requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        return *m_view;
    }
    /// Destroys the view. Must be called before its models are destroyed.
    void clear() { m_view.reset(); }

    [[nodiscard]] QQuickItem &view() const { return *m_view; }
    [[nodiscard]] QQuickWindow &window() { return m_window; }
    [[nodiscard]] look::Theme &theme() { return m_theme; }

private:
    FakeFontRegistry m_fonts;
    look::Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_view;
};

} // namespace corvane::tests
