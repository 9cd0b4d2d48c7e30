#include "tests/island/island_fixture.h"
#include "tests/look/view_layout.h"
#include "tests/look/view_stage.h"

#include <gtest/gtest.h>

namespace corvane::island {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The root view in a window, on a screen with a notch of 180 × 38 points.
class RootViewTest : public tests::IslandTest
{
protected:
    RootViewTest() { m_screens.screens = {tests::notchedScreen({0, 0, 1512, 982}, 180, 38)}; }

    ~RootViewTest() override { m_stage.clear(); }

    void show()
    {
        launchIsland();
        const QSizeF size = m_panels.state.frame.size();
        m_stage
            .show(u"Island/IslandRoot"_s,
                  {{u"model"_s, QVariant::fromValue(model.get())},
                   {u"island"_s, QVariant::fromValue(m_island.get())}},
                  size.toSize())
            .setSize(size);
    }

    [[nodiscard]] bool shows(const QString &text) const
    {
        return tests::texts(m_stage.view()).contains(text);
    }

    void click(const QString &name)
    {
        const QQuickItem *item = tests::control(m_stage.view(), name);
        ASSERT_NE(item, nullptr) << name.toStdString();
        const QPointF centre = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(&m_stage.window(), Qt::LeftButton, {}, centre.toPoint());
    }

    tests::ViewStage m_stage;
};

TEST_F(RootViewTest, StaysLockedUntilTheOwnerIsThere)
{
    show();
    m_pointer.moveTo({756, 970});
    queue.advance(220ms);
    const QString locked = u"CORVANE LOCKED"_s;
    ASSERT_TRUE(QTest::qWaitFor([&] { return shows(locked); }));
    EXPECT_EQ(tests::control(m_stage.view(), u"Settings"_s), nullptr);
    m_authenticator.answer(false);
    queue.drain();
    EXPECT_TRUE(shows(locked));

    // Whoever shows the prompts has left meanwhile; it is said before the next attempt, and not
    // after it.
    const QString missing =
        u"nobody can ask for your password: start a polkit agent, then try again"_s;
    const auto comeBack = [this] {
        m_pointer.moveTo({100, 100});
        queue.advance(2s);
        m_pointer.moveTo({756, 970});
        queue.advance(2s);
    };
    m_authenticator.available = false;
    comeBack();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shows(missing); }));
    m_authenticator.available = true;
    comeBack();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shows(locked) && !shows(missing); }));

    click(u"UNLOCK"_s);
    queue.drain();
    ASSERT_TRUE(m_authenticator.isAsking());
    m_authenticator.answer(true);
    queue.drain();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shows(locked); }));

    click(u"Settings"_s);
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);
    http.forgetRequests();
    http.hold(tests::coinGecko);
    click(u"Refresh"_s);
    queue.drain();
    // Its pictogram turns meanwhile, and ends upright.
    const auto parts = tests::control(m_stage.view(), u"Refresh"_s)->childItems();
    const auto turn = [&parts] {
        double sum = 0;
        for (const QQuickItem *part : parts) {
            sum += part->rotation();
        }
        return sum;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return turn() > 270; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return turn() < 180; })) << "once more";
    http.release(tests::coinGecko, R"({"solana": {"usd": 150}})");
    queue.drain();
    EXPECT_TRUE(QTest::qWaitFor([&] { return turn() == 360; }));
    EXPECT_EQ(http.count(tests::chart), 1);
}

TEST_F(RootViewTest, GrowsWithItsContentWithoutAJump)
{
    launchIsland();
    QQuickItem &body =
        m_stage.show(u"Island/IslandBody"_s,
                     {{u"transaction"_s, QVariant::fromValue(m_island->transaction())},
                      {u"middle"_s, 150},
                      {u"wantedWidth"_s, 200},
                      {u"wantedHeight"_s, 100},
                      {u"wantedRadius"_s, 8},
                      {u"shadowRadius"_s, 26},
                      {u"shadowY"_s, 12},
                      {u"shadow"_s, 0}},
                     {300, 300});
    body.setProperty("wantedHeight", 150);
    EXPECT_EQ(body.height(), 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return body.height() > 100 && body.height() < 150; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return body.height() == 150; }));
}

TEST_F(RootViewTest, TheTabLiesOverItsHitRectangle)
{
    for (const auto &[screenWidth, notch] : tests::Table<double, double>{
             {1512, 180}, {1512, 181}, {1512, 109}, {1513, 181}, {1513, 0}}) {
        m_screens.screens = {notch > 0 ? tests::notchedScreen({0, 0, screenWidth, 982}, notch, 38)
                                       : tests::plainScreen({0, 0, screenWidth, 982})};
        show();
        const QRectF hit = m_island->collapsedRect();
        const QRectF tab = m_panels.state.outline.translated(m_panels.state.frame.x(), hit.y());
        EXPECT_EQ(tab, hit) << screenWidth << ' ' << notch;
        m_stage.clear();
    }
}

} // namespace
} // namespace corvane::island
