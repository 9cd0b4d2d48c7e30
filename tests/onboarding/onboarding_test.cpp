#include "tests/onboarding/onboarding_fixture.h"

#include <QSignalSpy>

namespace corvane::onboarding {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tests::OnboardingTest;

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
        // It waits for the pointer, and collapses if the pointer does not come.
        queue.advance(5s);
        EXPECT_EQ(opened.count(), 1);
        queue.advance(3s);
        EXPECT_EQ(opened.count(), 2);
        EXPECT_FALSE(m_island->widened());
    }
}

TEST_F(OnboardingTest, MovesOnlyWhatCanBeMoved)
{
    const QString target = u"/Applications/Corvane.app"_s;
    const QString source = u"/home/ada/Downloads/Corvane.app"_s;
    const QStringList moved{u"copy "_s + source, u"open "_s + target};
    struct Case
    {
        const char *name;
        QString path;
        bool installedBefore;
        bool removable;
        bool copyable;
        bool succeeds;
        QStringList done;
    };
    const Case cases[] = {
        {"bare executable", u"/home/ada/build/app"_s, false, true, true, false, {}},
        {"installed", target, true, true, true, false, {}},
        {"over an old copy", source, true, true, true, true,
         QStringList{u"remove "_s + target} + moved},
        {"old copy stays", source, true, false, true, false, {u"remove "_s + target}},
        {"copy fails", source, false, true, false, false, {u"copy "_s + source}},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.name);
        m_bundle.done.clear();
        m_application.terminations = 0;
        m_bundle.runningFrom = expected.path;
        m_bundle.removable = expected.removable;
        m_bundle.copyable = expected.copyable;
        m_bundle.present = expected.installedBefore ? QStringList{target} : QStringList{};
        EXPECT_EQ(m_onboarding->moveToApplications(), expected.succeeds);
        EXPECT_EQ(m_bundle.done, expected.done);
        queue.advance(799ms);
        EXPECT_EQ(m_application.terminations, 0);
        queue.advance(1ms);
        EXPECT_EQ(m_application.terminations, expected.succeeds ? 1 : 0);
        queue.advance(5s);
    }
}

} // namespace
} // namespace corvane::onboarding
