#include "island/island_geometry.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

namespace corvane::island {
namespace {

using tests::FakeScreens;
using tests::notchedScreen;
using tests::plainScreen;
using MaybeScreen = std::optional<platform::Screen>;

TEST(IslandGeometry, ChoosesTheScreenWithTheNotch)
{
    const platform::Screen external = plainScreen({0, 0, 1920, 1080});
    const platform::Screen laptop = notchedScreen({1920, 98, 1512, 982}, 180, 38);
    FakeScreens screens;
    EXPECT_FALSE(notchScreen(screens));
    screens.screens = {external, laptop};
    screens.mainScreen = external;
    EXPECT_EQ(notchScreen(screens)->frame, laptop.frame);
    screens.screens = {plainScreen({0, 0, 800, 600}), external};
    EXPECT_EQ(notchScreen(screens)->frame, external.frame);
    screens.mainScreen.reset();
    EXPECT_EQ(notchScreen(screens)->frame, QRectF(0, 0, 800, 600));
}

TEST(IslandGeometry, MeasuresTheRestingIsland)
{
    const auto notched = [](double width, double height) {
        return notchedScreen({0, 0, 1512, 982}, width, height);
    };
    platform::Screen inconsistent = notched(180, 38);
    inconsistent.auxiliaryTopLeftArea->setWidth(1200);
    platform::Screen halfKnown = notched(180, 38);
    halfKnown.auxiliaryTopRightArea.reset();
    const QRectF deep(402, 584, 708, 398);
    const QRectF leftOfThePrimary(-1110, 590, 708, 392);
    const QRectF normal(402, 590, 708, 392);
    for (const auto &[screen, notch, collapsed, stage] :
         tests::Table<MaybeScreen, double, QRectF, QRectF>{
             {notched(180, 38), 180, {620, 944, 232, 38}, deep},
             {notched(100, 38), 100, {660, 944, 160, 38}, deep},
             {notched(180, 37.5), 180, {620, 944.5, 232, 37.5}, {402, 584.5, 708, 397.5}},
             // An odd width rounds away from zero.
             {plainScreen({0, 0, 1511, 982}), 0, {676, 950, 160, 32}, normal},
             {plainScreen({-1511, 0, 1511, 982}), 0, {-836, 950, 160, 32}, leftOfThePrimary},
             {inconsistent, 0, {676, 944, 160, 38}, deep},
             {halfKnown, 0, {676, 944, 160, 38}, deep},
             {{}, 0, {0, 0, 160, 32}, {0, 0, 900, 400}},
         }) {
        SCOPED_TRACE(testing::Message() << collapsed.x() << ' ' << collapsed.width());
        EXPECT_EQ(notchWidth(screen), notch);
        EXPECT_EQ(collapsedRect(screen), collapsed);
        EXPECT_EQ(stageRect(screen), stage);
    }
}

TEST(IslandGeometry, CountsTheLowerEdgesInAndTheUpperOnesOut)
{
    const QRectF area(10, 20, 30, 40);
    for (const auto &[point, inside] : std::vector<std::pair<QPointF, bool>>{
             {{10, 20}, true},
             {{39.9, 59.9}, true},
             {{9.9, 20}, false},
             {{10, 19.9}, false},
             {{40, 20}, false},
             {{10, 60}, false},
         }) {
        EXPECT_EQ(containsPoint(area, point), inside) << point.x() << ',' << point.y();
    }
}

TEST(IslandGeometry, MeasuresThePanes)
{
    const MaybeScreen notched = notchedScreen({0, 0, 1512, 982}, 180, 38);
    EXPECT_EQ(paneSize(notched, IslandPane::Settings), QSizeF(620, 344));
    EXPECT_EQ(paneSize({}, IslandPane::Settings), QSizeF(620, 338));
    EXPECT_EQ(expandedHoverRect(*notched, IslandPane::Balance), QRectF(436, 696, 640, 286));
}

} // namespace
} // namespace corvane::island
