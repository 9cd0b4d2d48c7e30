#include "tests/island/island_fixture.h"
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

    /// Waits until the island is drawn with this outline.
    [[nodiscard]] bool settlesAt(const QRectF &outline, double radius)
    {
        return QTest::qWaitFor(
            [&] {
                return m_panels.state.outline == outline && m_panels.state.bottomRadius == radius;
            },
            5000);
    }

    [[nodiscard]] QQuickItem *itemWith(const char *property, const QString &value) const
    {
        return search(&m_stage.view(), property, value);
    }

    void click(const QQuickItem *item)
    {
        const QPointF centre = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(&m_stage.window(), Qt::LeftButton, {}, centre.toPoint());
    }

    static QQuickItem *search(QQuickItem *item, const char *property, const QString &value)
    {
        if (item->isVisible() && item->property(property).toString() == value) {
            return item;
        }
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = search(child, property, value)) {
                return found;
            }
        }
        return nullptr;
    }

    tests::ViewStage m_stage;
};

TEST_F(RootViewTest, StaysLockedUntilTheOwnerIsThere)
{
    show();
    m_pointer.moveTo({756, 970});
    queue.advance(220ms);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return itemWith("text", u"CORVANE LOCKED"_s) != nullptr; }, 5000));
    EXPECT_NE(itemWith("name", u"lock.fill"_s), nullptr);
    EXPECT_EQ(itemWith("symbol", u"gearshape"_s), nullptr);
    m_authenticator.answer(false);
    queue.drain();
    EXPECT_NE(itemWith("text", u"CORVANE LOCKED"_s), nullptr);

    const QQuickItem *unlock = itemWith("label", u"UNLOCK"_s);
    ASSERT_NE(unlock, nullptr);
    // 40 above, the mark, 14, the title, 14, the button, 46 below.
    const double title = itemWith("text", u"CORVANE LOCKED"_s)->height();
    EXPECT_TRUE(settlesAt({44, 0, 620, 38 + 140 + title + unlock->height()}, 16));
    click(unlock);
    ASSERT_TRUE(m_authenticator.isAsking());
    m_authenticator.answer(true);
    queue.drain();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return itemWith("text", u"CORVANE LOCKED"_s) == nullptr; }, 5000));

    // The strip shows its buttons instead of the lock.
    EXPECT_EQ(itemWith("name", u"lock.fill"_s), nullptr);
    click(itemWith("symbol", u"gearshape"_s));
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);
    http.forgetRequests();
    click(itemWith("symbol", u"arrow.clockwise"_s));
    queue.drain();
    EXPECT_EQ(http.count(tests::chart), 1);
}

} // namespace
} // namespace corvane::island
