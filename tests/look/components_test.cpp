#include "assets/bundled_fonts.h"
#include "look/paint/pictogram.h"
#include "look/theme.h"
#include "tests/fakes/fake_font_registry.h"

#include <QFile>
#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

using namespace Qt::StringLiterals;
using tests::FakeFontRegistry;

TEST(Theme, FallsBackToTheDesktopsFontsWhereAFaceIsMissing)
{
    const QString mono = u"DejaVu Sans Mono"_s;
    const FakeFontRegistry all({{u"Silkscreen-Regular"_s, u"Silkscreen"_s},
                                {u"Pixelify Sans"_s, u"Pixelify Sans"_s},
                                {u"JetBrainsMono-Regular"_s, u"JetBrains Mono"_s}});
    EXPECT_EQ(Theme(all).pixel(9).family(), u"Silkscreen"_s);
    EXPECT_EQ(Theme(all).term(9, Theme::Heavy).family(), u"JetBrains Mono"_s);
    // The family is not used if only another face of it exists.
    const FakeFontRegistry other({{u"JetBrains Mono"_s, u"JetBrains Mono"_s}});
    EXPECT_EQ(Theme(other).term(9).family(), mono);
    EXPECT_EQ(Theme(other).pixel(9).family(), mono);
    EXPECT_EQ(Theme(other).pixel(9).weight(), QFont::ExtraBold);
}

TEST(Pictogram, HasAnIconForEverySymbol)
{
    assets::registerBundledFonts();
    const auto symbols = QMetaEnum::fromType<Pictogram::Symbol>();
    for (int index = 1; index < symbols.keyCount(); ++index) {
        const char *name = symbols.key(index);
        EXPECT_TRUE(QFile::exists(u":/corvane/pictograms/%1.svg"_s.arg(QLatin1String(name))))
            << name;
    }
}

/// Shows one component in a separate window.
class ComponentsTest : public testing::Test
{
protected:
    QQuickItem *show(const char *qml)
    {
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&m_engine);
        component.setData(
            "import QtQuick\nimport Corvane.Look\nimport Corvane.Look.Controls\n"
            "import Corvane.Look.Motion\nimport Corvane.Look.Paint\nimport Corvane.Look.Secrets\n" +
                QByteArray(qml),
            {});
        m_item.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(m_item) << qPrintable(component.errorString());
        if (m_item) {
            m_item->setParentItem(m_window.contentItem());
            m_window.resize(400, 200);
            m_window.show();
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
        }
        return m_item.get();
    }

    FakeFontRegistry m_fonts{{}};
    Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_item;
};

TEST_F(ComponentsTest, ButtonsAreTriggeredByPointerAndKeys)
{
    QQuickItem *button = show("PillButton { label: \"SEND\" }");
    ASSERT_NE(button, nullptr);
    QSignalSpy triggered(button, SIGNAL(triggered()));
    const QPoint centre(static_cast<int>(button->width()) / 2,
                        static_cast<int>(button->height()) / 2);
    QTest::mouseClick(&m_window, Qt::LeftButton, {}, centre);
    EXPECT_EQ(triggered.count(), 1);
    QTest::mousePress(&m_window, Qt::LeftButton, {}, centre);
    QTest::mouseRelease(&m_window, Qt::LeftButton, {}, {390, 190});
    EXPECT_EQ(triggered.count(), 1);
    m_window.requestActivate();
    button->childItems().constLast()->forceActiveFocus();
    int presses = 1;
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&m_window, static_cast<Qt::Key>(key));
        EXPECT_EQ(triggered.count(), ++presses);
        QKeyEvent held(QEvent::KeyPress, key, {}, {}, true);
        QCoreApplication::sendEvent(&m_window, &held);
        EXPECT_EQ(triggered.count(), presses) << "a key that is held down";
    }
}

TEST_F(ComponentsTest, ContentThatComesIsNeverSeenAsWhatLeft)
{
    QQuickItem *presence = show(R"(Presence {
        width: 100; enterBlur: 5; leaveBlur: 5
        property Component red: Rectangle { implicitHeight: 40; color: "red" }
        property Component blue: Rectangle { implicitHeight: 40; color: "blue" }
    })");
    ASSERT_NE(presence, nullptr);
    m_window.setColor(Qt::black);
    auto *motion = presence->property("motion").value<QObject *>();
    // Long enough that the animation is always running during the test.
    QMetaObject::invokeMethod(motion, "useEaseOut", Q_ARG(double, 100));
    const auto moveTo = [&](double amount) {
        QMetaObject::invokeMethod(motion, "jumpTo", Q_ARG(double, amount));
    };
    const auto isVeiled = [&] {
        const QQuickItem *live = presence->childItems().constFirst()->childItems().constFirst();
        return live->opacity() == 0;
    };
    for (const bool leavesWholly : {true, false}) {
        presence->setProperty("content", presence->property("red"));
        presence->setProperty("present", true);
        moveTo(1);
        presence->setProperty("present", false);
        moveTo(0.5);
        EXPECT_TRUE(QTest::qWaitFor(isVeiled));
        moveTo(leavesWholly ? 0 : 0.5);
        presence->setProperty("content", presence->property("blue"));
        presence->setProperty("present", true);
        for (const double amount : {0.3, 0.7}) {
            moveTo(amount);
            const QColor seen = m_window.grabWindow().pixelColor(50, 20);
            EXPECT_LT(seen.red(), 5) << amount;
            EXPECT_GT(seen.blue(), 50) << amount;
        }
    }
}

} // namespace
} // namespace corvane::look
