// The window's content in all its states: nothing of it is cut or lies over something else, and it
// can be walked through with the keyboard alone. Run at two scale factors and with the fallback
// fonts.

#include "assets/bundled_fonts.h"
#include "look/theme.h"
#include "tests/fakes/fake_font_registry.h"
#include "tests/look/view_layout.h"
#include "tests/onboarding/onboarding_fixture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

namespace corvane::onboarding {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class OnboardingViewsTest : public tests::OnboardingTest, public testing::WithParamInterface<bool>
{
protected:
    OnboardingViewsTest()
    {
        assets::registerBundledFonts();
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        m_window.resize(520, 640);
        m_window.setColor(Qt::black);
    }
    ~OnboardingViewsTest() override { m_view.reset(); }

    void open()
    {
        QQmlComponent component(&m_engine,
                                QUrl(u"qrc:/qt/qml/Corvane/Onboarding/OnboardingView.qml"_s));
        m_view.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{u"onboarding"_s, QVariant::fromValue(&*m_onboarding)}})));
        if (!m_view) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        m_view->setParentItem(m_window.contentItem());
        m_window.show();
        m_window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    [[nodiscard]] QStringList texts() const { return tests::texts(*m_view); }
    [[nodiscard]] QString focused() const
    {
        const QQuickItem *item = m_window.activeFocusItem();
        return item != nullptr ? item->property("label").toString() : QString();
    }
    void key(Qt::Key key) { QTest::keyClick(&m_window, key); }

    /// Waits until `title` is the only page, and looks at its layout.
    void expectPage(const QString &title, const QString &picture)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return titles() == QStringList{title}; }))
            << titles().join(u',').toStdString();
        tests::savePicture(m_window, {520, 640},
                           picture + (GetParam() ? u"-bundled"_s : u"-fallback"_s));
        tests::expectCleanLayout(*m_view, {30, 30, 460, 580});
    }

    [[nodiscard]] QStringList titles() const
    {
        const QStringList all{u"CORVANE"_s, u"INSTALL"_s, u"THE ISLAND"_s, u"YOUR WALLET"_s,
                              u"HOVER THE NOTCH"_s};
        QStringList shown = texts();
        shown.removeIf([&](const QString &text) { return !all.contains(text); });
        return shown;
    }

    tests::FakeFontRegistry m_fonts =
        GetParam() ? tests::FakeFontRegistry::bundled() : tests::FakeFontRegistry({});
    look::Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_view;
};

INSTANTIATE_TEST_SUITE_P(Fonts, OnboardingViewsTest, testing::Bool(),
                         [](const auto &run) { return run.param ? "Bundled" : "Fallback"; });

TEST_P(OnboardingViewsTest, EveryPageIsWholeAndTheKeyboardReachesAll)
{
    open();
    expectPage(u"CORVANE"_s, u"welcome"_s);
    EXPECT_EQ(tests::control(*m_view, u"BACK"_s), nullptr);
    key(Qt::Key_Left);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Close"_s);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"CONTINUE"_s);
    key(Qt::Key_Return);
    expectPage(u"INSTALL"_s, u"install-dev-build"_s);
    key(Qt::Key_Right);
    expectPage(u"THE ISLAND"_s, u"demo-resting"_s);
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return texts().contains(u"QUIB"_s); }));
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return texts().contains(u"$1,234.56"_s); }));
    expectPage(u"THE ISLAND"_s, u"demo-unfurled"_s);
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !texts().contains(u"QUIB"_s); }));
    key(Qt::Key_Space);
    expectPage(u"YOUR WALLET"_s, u"wallet"_s);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    expectPage(u"HOVER THE NOTCH"_s, u"ready"_s);
    EXPECT_FALSE(m_island->expanded());

    // Back to the first page by its button, which then leaves the keyboard to its neighbour.
    key(Qt::Key_Backtab);
    EXPECT_EQ(focused(), u"BACK"_s);
    for (int pages = 0; pages < 4; ++pages) {
        key(Qt::Key_Space);
    }
    expectPage(u"CORVANE"_s, u"welcome-again"_s);
    EXPECT_EQ(focused(), u"CONTINUE"_s);
}

TEST_P(OnboardingViewsTest, InstallPageTellsItsThreeStates)
{
    struct Case
    {
        QString path;
        bool login;
        QString picture;
        bool button;
    };
    const Case cases[] = {
        {u"/home/ada/Downloads/Corvane.app"_s, false, u"install-downloaded"_s, true},
        {u"/Applications/Corvane.app"_s, true, u"install-installed"_s, false},
    };
    for (const Case &expected : cases) {
        m_bundle.runningFrom = expected.path;
        m_loginItem.enabled = expected.login;
        m_view.reset();
        open();
        key(Qt::Key_Right);
        expectPage(u"INSTALL"_s, expected.picture);
        QQuickItem *button = tests::control(*m_view, u"MOVE TO APPLICATIONS"_s);
        EXPECT_EQ(button != nullptr, expected.button);
        if (button != nullptr) {
            ASSERT_TRUE(QMetaObject::invokeMethod(button, "triggered"));
            EXPECT_NE(tests::control(*m_view, u"MOVING…"_s), nullptr);
            EXPECT_EQ(m_bundle.done.size(), 2);
        }
    }
}

} // namespace
} // namespace corvane::onboarding
