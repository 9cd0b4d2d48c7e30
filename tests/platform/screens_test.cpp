#include "platform/linux/toolkit/camera_notch.h"
#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/toolkit/screen_coordinates.h"
#include "platform/linux/x11/covered_display.h"
#include "platform/linux/x11/window_region.h"

#include "tests/fakes/table.h"

#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

using namespace Qt::StringLiterals;
using namespace platform;

// A primary display of 1920 x 1080 points at scale 2, one at scale 1 to its left and lower, and one
// above it.
const QRect primary(0, 0, 1920, 1080);
const QRect left(-1280, 200, 1280, 1024);
const QRect above(300, -1440, 2560, 1440);

const ScreenCoordinates threeDisplays(primary, {{left, 1}, {primary, 2}, {above, 1.25}});

TEST(ScreenCoordinates, PutsTheOriginAtThePrimaryScreensBottomLeft)
{
    for (const auto &[qt, global] : Table<QRectF, QRectF>{
             {primary, {0, 0, 1920, 1080}},
             {left, {-1280, -144, 1280, 1024}},
             {above, {300, 1080, 2560, 1440}},
         }) {
        EXPECT_EQ(threeDisplays.globalFromQt(qt), global);
        EXPECT_EQ(threeDisplays.qtFromGlobal(global), qt);
    }
    EXPECT_EQ(threeDisplays.globalFromQt(QPointF(10, 20)), QPointF(10, 1060));
    const ScreenCoordinates moved(QRect(1280, 100, 800, 600), {});
    EXPECT_EQ(moved.globalFromQt(QRectF(1280, 100, 800, 600)), QRectF(0, 0, 800, 600));
}

TEST(ScreenCoordinates, FindsAPixelsDisplayAndItsScale)
{
    for (const auto &[pixel, point] : Table<QPoint, std::optional<QPointF>>{
             {{0, 0}, QPointF(0.25, 1079.75)},
             {{3839, 2159}, QPointF(1919.75, 0.25)},
             {{3840, 0}, std::nullopt},
             {{0, 2160}, std::nullopt},
             {{-1, 200}, QPointF(-0.5, 879.5)},
             {{-1280, 1224}, std::nullopt},
             {{425, -1315}, QPointF(400.4, 2419.6)},
             {{-5, 0}, std::nullopt},
         }) {
        EXPECT_EQ(threeDisplays.globalFromPixel(pixel), point) << pixel.x() << ',' << pixel.y();
    }
    EXPECT_FALSE(ScreenCoordinates().globalFromPixel({0, 0}).has_value());
}

TEST(CameraNotch, ReadsWidthAndHeight)
{
    EXPECT_EQ(parseNotch(u"180.5x37.25"_s), QSizeF(180.5, 37.25));
    EXPECT_EQ(parseNotch(u"1x200"_s), QSizeF(1, 200));
    for (const QString &text :
         {u"180x200.5"_s, u"0x38"_s, u"180x-38"_s, u"180"_s, u"180x"_s, u"x38"_s, u"180x38x2"_s,
          u"180 x 38"_s, u"180X38"_s, u"180x38\n"_s, u"1e2x38"_s, u"nanxinf"_s, u""_s}) {
        EXPECT_EQ(parseNotch(text), std::nullopt) << text.toStdString();
    }
}

TEST(CameraNotch, LeavesEqualAreasOnBothSides)
{
    Screen screen{u"eDP-1"_s, QRectF(-100, 50, 1512, 982), 0, {}, {}};
    addNotch(screen, {180, 38});
    EXPECT_EQ(screen.safeAreaTop, 38);
    EXPECT_EQ(screen.auxiliaryTopLeftArea, QRectF(-100, 994, 666, 38));
    EXPECT_EQ(screen.auxiliaryTopRightArea, QRectF(746, 994, 666, 38));

    Screen narrow{u"small"_s, QRectF(0, 0, 170, 982), 0, {}, {}};
    addNotch(narrow, {180, 38});
    EXPECT_EQ(narrow.safeAreaTop, 0);
    EXPECT_FALSE(narrow.auxiliaryTopLeftArea.has_value());
}

TEST(CameraNotch, IsThatOfTheLaptopWhereItsRowsAreShown)
{
    const auto air = "apple,j413\0apple,t8112\0apple,arm-platform\0"_ba;
    const auto pro = "apple,j416c\0apple,t6021\0apple,arm-platform\0"_ba;
    const std::optional<QSizeF> none;
    for (const auto &[compatible, screen, notch] : Table<QByteArray, QSizeF, std::optional<QSizeF>>{
             {air, {2560, 1664}, QSizeF(313, 57)},
             {air, {1280, 832}, QSizeF(156.5, 28.5)},
             {air, {1280, 800}, none},
             {air, {640, 400}, none},
             {air, {1463, 951}, QSizeF(313, 57) / (2560 / 1463.0)},
             {pro, {1728, 1117}, QSizeF(185, 32)},
             {pro, {1728, 1080}, none},
             {pro, {1117, 1728}, none},
             {"apple,j314s\0apple,t6000\0"_ba, {1512, 982}, QSizeF(185, 32)},
             {"apple,j415\0apple,t8112\0"_ba, {1440, 932}, QSizeF(156.5, 28.5)},
             {"apple,j313\0apple,t8103\0"_ba, {1280, 832}, none},
             {"apple,j4130\0"_ba, {1280, 832}, none},
             {air, {0, 0}, none},
             {{}, {1280, 832}, none},
         }) {
        EXPECT_EQ(laptopNotch(compatible, screen), notch)
            << compatible.toStdString() << ' ' << screen.width();
    }
    for (const auto &[connector, internal] : Table<QString, bool>{
             {u"eDP-1"_s, true}, {u"DSI-1"_s, true}, {u"DP-1"_s, false}, {u"HDMI-A-1"_s, false}}) {
        EXPECT_EQ(isInternalConnector(connector), internal) << connector.toStdString();
    }
}

TEST(QtScreens, PutsTheNotchOnThePrimaryScreen)
{
    const auto main = QtScreens(u"180x38"_s).main();
    ASSERT_TRUE(main.has_value());
    EXPECT_EQ(main->frame.topLeft(), QPointF(0, 0));
    EXPECT_EQ(main->safeAreaTop, 38);
    EXPECT_EQ(QtScreens(u"broken"_s).main()->safeAreaTop, 0);
}

TEST(WindowRegion, RoundsEdgesToPixels)
{
    EXPECT_EQ(pixelsOf(QRectF(10, 0, 20.5, 32), 2), QRect(20, 0, 41, 64));
    EXPECT_EQ(pixelsOf(QRectF(0.3, 0, 0.3, 1), 1), QRect(0, 0, 1, 1));
    EXPECT_TRUE(pixelsOf(QRectF(), 2).isEmpty());
    EXPECT_TRUE(pixelsOf(QRectF(5, 5, -3, 10), 1).isEmpty());
}

TEST(CoveredDisplay, IsUnderAFullScreenWindowThatIsInUse)
{
    constexpr std::uint32_t film = 1;
    constexpr std::uint32_t other = 2;
    const QRect display(0, 0, 1920, 1080);
    const QRect beside(1920, 0, 1920, 1080);
    const QRect both(0, 0, 3840, 1080);
    const QRect part(0, 0, 1920, 1079);
    const QRect small(100, 100, 400, 300);
    for (const auto &[films, others, active, covered] :
         Table<ClientWindow, ClientWindow, std::uint32_t, bool>{
             {{film, display, true, true}, {}, film, true},
             {{film, both, true, true}, {}, film, true},
             {{film, display, true, false}, {}, film, false},
             {{film, display, false, true}, {}, film, false},
             {{film, part, true, true}, {}, film, false},
             {{film, beside, true, true}, {}, film, false},
             {{film, display, true, true}, {other, small, true, false}, film, true},
             {{film, display, true, true}, {other, small, true, false}, other, false},
             {{film, display, true, true}, {other, small, false, false}, other, true},
             {{film, display, true, true}, {other, beside, true, false}, other, true},
             {{film, display, true, true}, {other, display, true, true}, other, true},
             {{film, display, true, true}, {}, 0, true},
         }) {
        EXPECT_EQ(isCovered(display, {films, others}, active), covered)
            << films.area.width() << ' ' << others.area.width() << ' ' << active;
    }
}

} // namespace
} // namespace corvane::tests
