#include "onboarding/install_page_model.h"
#include "onboarding/island_demo_model.h"
#include "tests/onboarding/onboarding_fixture.h"

namespace corvane::onboarding {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tests::OnboardingTest;

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
    struct Case
    {
        QString path;
        QString detail;
        bool done;
        bool movable;
    };
    const Case cases[] = {
        {u"/home/ada/build/app"_s, u"dev build — install with the installer script"_s, true, false},
        {u"/home/ada/Downloads/Corvane.app"_s, download, false, true},
        {u"/Applications/Corvane.app"_s, u"installed"_s, true, false},
        {u"/Applications/tools/bin"_s, u"installed"_s, true, false},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.path.toStdString());
        m_bundle.runningFrom = expected.path;
        InstallPageModel page;
        complete(page);
        EXPECT_EQ(page.applicationsDetail(), expected.detail);
        EXPECT_EQ(page.applicationsDone(), expected.done);
        EXPECT_EQ(page.isMovable(), expected.movable);
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

} // namespace
} // namespace corvane::onboarding
