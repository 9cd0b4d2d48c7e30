#include "onboarding/install_page_model.h"
#include "onboarding/island_demo_model.h"
#include "onboarding/onboarding.h"
#include "tests/fakes/fake_shell.h"
#include "tests/island/island_fixture.h"
#include "tests/look/view_layout.h"
#include "tests/look/view_stage.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <algorithm>

namespace corvane::onboarding {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// An island, and the tour that ends by opening it.
class OnboardingTest : public tests::IslandTest
{
protected:
    OnboardingTest()
    {
        m_screens.screens = {tests::plainScreen({0, 0, 1512, 982})};
        launchIsland();
    }
    ~OnboardingTest() override { m_onboarding.reset(); }

    tests::FakeApplication m_application;
    tests::FakeBundle m_bundle;
    tests::FakeLoginItem m_loginItem;
    tests::FakeFloatingWindows m_windows;
    std::optional<Onboarding> m_onboarding{
        std::in_place,
        OnboardingServices{queue, settings, m_bundle, m_loginItem, m_application, m_windows,
                           [](Onboarding &) { return std::make_unique<QQuickItem>(); }}};
};

TEST_F(OnboardingTest, ShowsOneWindowInTheMiddleAndRemembersThat)
{
    EXPECT_EQ(m_windows.existing, 0) << "nothing is created before it is shown";
    m_onboarding->show(*m_island);
    EXPECT_TRUE(m_windows.visible);
    EXPECT_EQ(m_windows.latestFrame, QRectF(496, 171, 520, 640));
    EXPECT_EQ(settings.boolean(u"corvane.onboarded.v1"_s), true);

    // However it was closed, the same window is shown again, and the setting is not written again.
    const auto writes = settings.writes.size();
    QQuickItem *content = m_windows.latestContent;
    m_onboarding->close();
    EXPECT_FALSE(m_windows.visible);
    m_onboarding->show(*m_island);
    EXPECT_TRUE(m_windows.visible);
    EXPECT_EQ(m_windows.latestContent, content);
    EXPECT_EQ(m_windows.titles.size(), 1);
    EXPECT_EQ(settings.writes.size(), writes);
    EXPECT_FALSE(m_island->expanded());
}

TEST_F(OnboardingTest, FinishOpensTheIslandAndTheNextTourIsNew)
{
    m_onboarding->show(*m_island);
    const QPointer<QQuickItem> content = m_windows.latestContent;
    m_onboarding->finish();
    EXPECT_FALSE(m_windows.visible);
    EXPECT_TRUE(content) << "the button's handler is still running";
    queue.advance(100ms);
    EXPECT_FALSE(content);
    EXPECT_TRUE(m_island->expanded());

    m_onboarding->show(*m_island);
    EXPECT_EQ(m_windows.titles.size(), 2);
    EXPECT_EQ(m_windows.existing, 1);
}

TEST_F(OnboardingTest, AnIslandThatLooksAtThePointerMeanwhileOpensAllTheSame)
{
    // Without authentication, whose prompt would keep the island open. The pointer is on the
    // button; the island polls its position every 150 ms.
    m_authenticator.available = false;
    m_pointer.position = QPointF(900, 200);
    for (const auto moment : {0ms, 60ms, 149ms}) {
        SCOPED_TRACE(moment.count());
        queue.advance(3s + moment);
        m_onboarding->show(*m_island);
        QSignalSpy opened(m_island.get(), &island::IslandController::expandedChanged);
        m_onboarding->finish();
        queue.advance(300ms);
        EXPECT_EQ(opened.count(), 1);
        // It has the keyboard from the tour, and collapses once that goes elsewhere.
        queue.advance(30s);
        EXPECT_EQ(opened.count(), 1);
        m_panels.state.setActive(false);
        queue.advance(1s);
        EXPECT_EQ(opened.count(), 2);
        EXPECT_FALSE(m_island->widened());
    }
}

TEST_F(OnboardingTest, MovesOnlyWhatCanBeMoved)
{
    const QString target = u"/Applications/Corvane.app"_s;
    const QString source = u"/home/ada/Downloads/Corvane.app"_s;
    const QStringList moved{u"copy "_s + source, u"open "_s + target};
    const QStringList removed{u"remove "_s + target};
    for (const auto &[path, installedBefore, removable, copyable, succeeds, done] :
         tests::Table<QString, bool, bool, bool, bool, QStringList>{
             {u"/home/ada/build/app"_s, false, true, true, false, {}},
             {target, true, true, true, false, {}},
             {source, true, true, true, true, removed + moved},
             {source, true, false, true, false, removed},
             {source, false, true, false, false, {u"copy "_s + source}},
         }) {
        SCOPED_TRACE(done.join(u',').toStdString());
        m_bundle.done.clear();
        m_application.terminations = 0;
        m_bundle.runningFrom = path;
        m_bundle.removable = removable;
        m_bundle.copyable = copyable;
        m_bundle.present = installedBefore ? QStringList{target} : QStringList{};
        EXPECT_EQ(m_onboarding->moveToApplications(), succeeds);
        EXPECT_EQ(m_bundle.done, done);
        queue.advance(799ms);
        EXPECT_EQ(m_application.terminations, 0);
        queue.advance(1ms);
        EXPECT_EQ(m_application.terminations, succeeds ? 1 : 0);
        queue.advance(5s);
    }
}

class PageModels : public OnboardingTest
{
protected:
    template <typename Model>
    void complete(Model &model)
    {
        model.setProperty("onboarding", QVariant::fromValue(&*m_onboarding));
        model.componentComplete();
    }
};

TEST_F(PageModels, InstallRowsSayWhereItLives)
{
    const QString download = u"currently running from the download location"_s;
    const QString build = u"dev build — install with the installer script"_s;
    for (const auto &[path, detail, done, movable] : tests::Table<QString, QString, bool, bool>{
             {u"/home/ada/build/app"_s, build, true, false},
             {u"/home/ada/Downloads/Corvane.app"_s, download, false, true},
             {u"/Applications/Corvane.app"_s, u"installed"_s, true, false},
             {u"/Applications/tools/bin"_s, u"installed"_s, true, false},
         }) {
        SCOPED_TRACE(path.toStdString());
        m_bundle.runningFrom = path;
        InstallPageModel page;
        complete(page);
        EXPECT_EQ(page.applicationsDetail(), detail);
        EXPECT_EQ(page.applicationsDone(), done);
        EXPECT_EQ(page.isMovable(), movable);
    }
}

TEST_F(PageModels, DemoGoesRoundWhileItIsShown)
{
    const auto timers = queue.pendingTimers();
    {
        IslandDemoModel demo;
        complete(demo);
        queue.advance(5s);
        EXPECT_FALSE(demo.isStretched()) << "the page is hidden";
        demo.setShown(true);
        queue.advance(1499ms);
        EXPECT_FALSE(demo.isStretched());
        queue.advance(1ms);
        QStringList captions;
        using Phase = std::pair<bool, bool>;
        for (const Phase &phase :
             {Phase{true, false}, {true, true}, {false, false}, {true, false}}) {
            EXPECT_EQ(Phase(demo.isStretched(), demo.isUnfurled()), phase);
            captions.append(demo.caption());
            queue.advance(1500ms);
        }
        EXPECT_EQ(captions.first(), captions.last());
        EXPECT_EQ(captions.removeDuplicates(), 1);
    }
    EXPECT_EQ(queue.pendingTimers(), timers);
}

TEST_F(OnboardingTest, FitsOnALowScreen)
{
    m_screens.screens = {tests::plainScreen({0, 0, 910.67, 512.33})};
    m_onboarding->show(*m_island);
    EXPECT_EQ(m_windows.latestFrame.size(), QSizeF(520, 512));

    tests::ViewStage stage;
    const QStringList headings{u"CORVANE"_s, u"INSTALL"_s, u"THE ISLAND"_s, u"YOUR WALLET"_s,
                               u"HOVER THE NOTCH"_s};
    const QVariantMap tour{{u"onboarding"_s, QVariant::fromValue(&*m_onboarding)}};
    for (const int height : {512, 400}) {
        QQuickItem &view = stage.show(u"Onboarding/OnboardingView"_s, tour, {520, height});
        view.setSize(QSizeF(520, height));
        for (const QString &heading : headings) {
            SCOPED_TRACE(std::to_string(height) + ' ' + heading.toStdString());
            EXPECT_TRUE(QTest::qWaitFor([&] {
                const QStringList shown = tests::texts(view);
                return std::ranges::count_if(
                           headings, [&](const QString &other) { return shown.contains(other); }) ==
                           1 &&
                       shown.contains(heading);
            }));
            tests::expectCleanLayout(view, view.boundingRect());
            QTest::keyClick(&stage.window(), Qt::Key_Right);
        }
    }
    // Lower than any page can be made: its end is scrolled to, and its beginning.
    QQuickItem &view = stage.show(u"Onboarding/WalletTourPage"_s, {}, {460, 150});
    view.setSize(QSizeF(460, 150));
    const auto isVisible = [&view](const QString &text) {
        QList<tests::Writing> writings;
        tests::collect(view, view, writings);
        const auto found = std::ranges::find(writings, text, &tests::Writing::text);
        return found != writings.end() && view.boundingRect().contains(found->place);
    };
    const QString last = u"BACK UP THE KEY"_s;
    ASSERT_TRUE(QTest::qWaitFor([&] { return isVisible(headings.at(3)) && !isVisible(last); }));
    for (const auto &[distance, shown, hidden] : tests::Table<double, QString, QString>{
             {1000, last, headings.at(3)}, {-1000, headings.at(3), last}}) {
        QMetaObject::invokeMethod(&view, "scrollBy", Q_ARG(QVariant, distance));
        EXPECT_TRUE(isVisible(shown) && !isVisible(hidden)) << distance;
    }
    // Before that, the spacing gives way.
    view.setHeight(245);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isVisible(headings.at(3)) && isVisible(last); }));
}

} // namespace
} // namespace corvane::onboarding
