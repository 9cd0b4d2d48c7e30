// The window's content in all its states, without clipped or overlapping texts, and its operation
// by keyboard. Run at two scale factors and with the fallback fonts.

#include "tests/look/view_layout.h"
#include "tests/look/view_stage.h"
#include "tests/onboarding/onboarding_fixture.h"

namespace corvane::onboarding {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class OnboardingViewsTest : public tests::OnboardingTest, public testing::WithParamInterface<bool>
{
protected:
    ~OnboardingViewsTest() override { m_stage.clear(); }

    void open()
    {
        m_stage.show(u"Onboarding/OnboardingView"_s,
                     {{u"onboarding"_s, QVariant::fromValue(&*m_onboarding)}}, {520, 640});
    }

    [[nodiscard]] QStringList texts() const { return tests::texts(m_stage.view()); }
    [[nodiscard]] QString focused()
    {
        const QQuickItem *item = m_stage.window().activeFocusItem();
        return item != nullptr ? item->property("label").toString() : QString();
    }
    void key(Qt::Key key) { QTest::keyClick(&m_stage.window(), key); }

    /// Waits until `title` is the only visible page, and checks its layout.
    void expectPage(const QString &title)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return titles() == QStringList{title}; }))
            << titles().join(u',').toStdString();
        tests::expectCleanLayout(m_stage.view(), {30, 30, 460, 580});
    }

    [[nodiscard]] QStringList titles() const
    {
        const QStringList all{u"CORVANE"_s, u"INSTALL"_s, u"THE ISLAND"_s, u"YOUR WALLET"_s,
                              u"HOVER THE NOTCH"_s};
        QStringList shown = texts();
        shown.removeIf([&](const QString &text) { return !all.contains(text); });
        return shown;
    }

    tests::ViewStage m_stage{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Fonts, OnboardingViewsTest, testing::Bool(),
                         [](const auto &run) { return run.param ? "Bundled" : "Fallback"; });

TEST_P(OnboardingViewsTest, EveryPageIsWholeAndTheKeyboardReachesAll)
{
    open();
    expectPage(u"CORVANE"_s);
    EXPECT_EQ(tests::control(m_stage.view(), u"BACK"_s), nullptr);
    key(Qt::Key_Left);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Close"_s);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"CONTINUE"_s);
    key(Qt::Key_Return);
    expectPage(u"INSTALL"_s);
    key(Qt::Key_Right);
    expectPage(u"THE ISLAND"_s);
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return texts().contains(u"QUIB"_s); }));
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return texts().contains(u"$1,234.56"_s); }));
    expectPage(u"THE ISLAND"_s);
    queue.advance(1500ms);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !texts().contains(u"QUIB"_s); }));
    key(Qt::Key_Space);
    expectPage(u"YOUR WALLET"_s);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    expectPage(u"HOVER THE NOTCH"_s);
    EXPECT_FALSE(m_island->expanded());

    // Back to the first page with its button, which then disappears and passes keyboard focus to
    // the next button.
    key(Qt::Key_Backtab);
    EXPECT_EQ(focused(), u"BACK"_s);
    for (int pages = 0; pages < 4; ++pages) {
        key(Qt::Key_Space);
    }
    expectPage(u"CORVANE"_s);
    EXPECT_EQ(focused(), u"CONTINUE"_s);
}

TEST_P(OnboardingViewsTest, InstallPageOffersToMoveWhatCanBeMoved)
{
    for (const bool movable : {true, false}) {
        m_bundle.runningFrom =
            movable ? u"/home/ada/Downloads/Corvane.app"_s : u"/Applications/Corvane.app"_s;
        m_loginItem.enabled = !movable;
        open();
        key(Qt::Key_Right);
        expectPage(u"INSTALL"_s);
        EXPECT_EQ(tests::control(m_stage.view(), u"MOVE TO APPLICATIONS"_s) != nullptr, movable);
    }
}

} // namespace
} // namespace corvane::onboarding
