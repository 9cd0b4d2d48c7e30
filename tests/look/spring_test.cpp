// Springs, timing curves, the values animated by them, and what moves by itself.

#include "look/controls/rolling_text.h"
#include "look/motion/animated_value.h"
#include "look/motion/animation.h"
#include "look/motion/breathing_mark.h"
#include "look/motion/spring.h"
#include "look/motion/timing_curves.h"
#include "tests/look/item_fixture.h"

#include <QAbstractEventDispatcher>
#include <QAnimationDriver>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPainter>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <numbers>

namespace corvane::look {
namespace {

/// The same spring, integrated in small steps: slow, but independent of the closed form.
Motion integrated(const Spring &spring, Motion motion, double target, double seconds)
{
    const double omega = 2 * std::numbers::pi / spring.response;
    const double damping = 4 * std::numbers::pi * spring.dampingFraction / spring.response;
    const auto force = [&](double value, double velocity) {
        return -omega * omega * (value - target) - damping * velocity;
    };
    constexpr int steps = 20'000;
    const double h = seconds / steps;
    for (int step = 0; step < steps; ++step) {
        const double middle = motion.velocity + h / 2 * force(motion.value, motion.velocity);
        const double slope = force(motion.value + h / 2 * motion.velocity, middle);
        motion.value += h * middle;
        motion.velocity += h * slope;
    }
    return motion;
}

TEST(Spring, AgreesWithTheEquationOfMotionAndSettlesInTime)
{
    for (const double fraction : {0.0, 0.55, 0.88, 1.0, 1.0 + 1e-9, 1.6}) {
        for (const double velocity : {0.0, 900.0, -300.0}) {
            SCOPED_TRACE(testing::Message() << fraction << ' ' << velocity);
            const Spring spring{0.42, fraction};
            const Motion start{160, velocity};
            for (const double time : {0.0, 0.03, 0.1, 0.4}) {
                const Motion expected = integrated(spring, start, 620, time);
                const Motion actual = springMotion(spring, start, 620, time);
                EXPECT_NEAR(actual.value, expected.value, 0.01);
                EXPECT_NEAR(actual.velocity, expected.velocity, 1);
            }
            const double settled = springSettlingTime(spring, start, 620, 0.2);
            for (int step = 0; fraction > 0 && step < 400; ++step) {
                const Motion late = springMotion(spring, start, 620, settled + step * 0.005);
                EXPECT_NEAR(late.value, 620, 0.2);
                EXPECT_LT(settled, 3);
            }
        }
    }
}

TEST(Animation, RunsAlongItsCurveAfterItsDelay)
{
    // Reference values of the CSS timing functions with the same control points.
    EXPECT_NEAR(easeInOutCurve().valueForProgress(0.25), 0.12916, 5e-4);
    EXPECT_NEAR(easeOutCurve().valueForProgress(0.5), 0.68464, 5e-4);
    EXPECT_NEAR(easeInCurve().valueForProgress(0.5), 0.31536, 5e-4);
    const Animation late = Animation::easeOut(0.24).delayed(0.16);
    EXPECT_EQ(late.motionAt(0.15, {3, 0}, 7).value, 3);
    EXPECT_GT(late.motionAt(0.2, {3, 0}, 7).value, 3);
    EXPECT_EQ(late.motionAt(0.4, {3, 0}, 7).value, 7);
    EXPECT_NEAR(late.duration({3, 0}, 7, 0.01), 0.4, 1e-9);
}

/// A frame clock that is moved by the test.
class HandDrivenFrames : public QAnimationDriver
{
public:
    HandDrivenFrames() { install(); }
    ~HandDrivenFrames() override { uninstall(); }

    void advanceBy(int milliseconds)
    {
        // Animations are started by a queued call.
        QCoreApplication::processEvents();
        m_elapsed += milliseconds;
        advanceAnimation();
    }

    [[nodiscard]] qint64 elapsed() const override { return m_elapsed; }

private:
    qint64 m_elapsed = 0;
};

class AnimatedValueTest : public testing::Test
{
protected:
    void frames(int count)
    {
        for (int frame = 0; frame < count; ++frame) {
            m_frames.advanceBy(16);
        }
    }

    HandDrivenFrames m_frames;
    Transaction m_transaction;
    AnimatedValue m_value;
};

TEST_F(AnimatedValueTest, FollowsTheTransactionAndJumpsOutsideOfOne)
{
    m_value.setTransaction(&m_transaction);
    m_value.setTarget(10);
    EXPECT_EQ(m_value.value(), 10);
    EXPECT_FALSE(m_value.isRunning());
    const Animation outer = Animation::easeOut(0.16);
    m_transaction.run(outer, [&] {
        m_transaction.run(Animation::spring(0.3, 0.9), [] {});
        m_value.setTarget(20);
    });
    EXPECT_TRUE(m_transaction.current().isImmediate());
    frames(5);
    EXPECT_GT(m_value.value(), 12);
    EXPECT_LT(m_value.value(), 20);
    frames(8);
    EXPECT_EQ(m_value.value(), 20);
    EXPECT_FALSE(m_value.isRunning());
    m_value.useSpringOutside(0.3, 0.9);
    m_value.setTarget(10);
    EXPECT_EQ(m_value.value(), 20);
    frames(120);
    EXPECT_EQ(m_value.value(), 10);
}

TEST_F(AnimatedValueTest, TurnsRoundInFlightWithoutAJumpOfPlaceOrSpeed)
{
    m_value.useSpring(0.3, 0.9);
    m_value.setTarget(100);
    frames(5);
    const double before = m_value.value();
    ASSERT_GT(before, 10);
    ASSERT_LT(before, 90);
    m_value.setTarget(0);
    EXPECT_EQ(m_value.value(), before);
    // It continues outwards for a moment before it reverses.
    m_frames.advanceBy(1);
    m_frames.advanceBy(1);
    EXPECT_GT(m_value.value(), before);
    EXPECT_LT(m_value.value(), before + 5);
    frames(120);
    EXPECT_EQ(m_value.value(), 0);
    EXPECT_FALSE(m_value.isRunning());
}

TEST(RollingText, CutsNothingThatIsSeenAndGoesOnFromWhereItIs)
{
    HandDrivenFrames frames;
    RollingText roll;
    RollingText still;
    const auto seen = [](RollingText &item) {
        item.setSize({item.implicitWidth(), item.implicitHeight()});
        QImage image(300, 30, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        QPainter painter(&image);
        item.paint(&painter);
        return image;
    };
    const QString wide = QStringLiteral("8.2000 SOL");
    roll.setText(wide);
    const double width = roll.implicitWidth();
    const QImage atRest = seen(roll);
    roll.setText(QStringLiteral("$1.00"));
    EXPECT_EQ(roll.implicitWidth(), width);
    EXPECT_EQ(seen(roll), atRest) << "starts with the old text";
    for (int frame = 0; frame < 8; ++frame) {
        frames.advanceBy(16);
    }
    EXPECT_EQ(roll.implicitWidth(), width);
    const QImage halfway = seen(roll);
    EXPECT_NE(halfway, atRest);
    roll.setText(QStringLiteral("$2.00"));
    EXPECT_EQ(seen(roll), halfway);
    frames.advanceBy(16);
    EXPECT_NE(seen(roll), halfway);
    for (int frame = 0; frame < 100; ++frame) {
        frames.advanceBy(16);
    }
    EXPECT_LT(roll.implicitWidth(), width);
    still.setText(roll.text());
    EXPECT_EQ(seen(roll), seen(still));
}

using BreathingMarkTest = tests::ItemTest<BreathingMark>;

TEST_F(BreathingMarkTest, KeepsTimeOnlyWhileItShows)
{
    const auto keepsTime = [&] {
        return !QAbstractEventDispatcher::instance()->registeredTimers(&m_item).isEmpty();
    };
    EXPECT_TRUE(keepsTime());
    for (const bool visible : {false, true}) {
        m_item.setVisible(visible);
        EXPECT_EQ(keepsTime(), visible) << "the item";
    }
    for (const bool visible : {false, true}) {
        m_window.setVisible(visible);
        EXPECT_EQ(keepsTime(), visible) << "its window";
    }
    m_item.setParentItem(nullptr);
    EXPECT_FALSE(keepsTime());
}

TEST_F(BreathingMarkTest, StepsAtItsOwnersTicksOnlyWhereTheChangeIsSeen)
{
    m_item.setProperty("ticked", true);
    EXPECT_TRUE(QAbstractEventDispatcher::instance()->registeredTimers(&m_item).isEmpty());
    const QSignalSpy breathed(&m_item, &BreathingMark::breathed);
    m_item.setProperty("period", 1000.0);
    m_item.tick();
    EXPECT_EQ(breathed.count(), 0) << "changes slowly";
    m_item.setProperty("period", 0.0017);
    for (const QDeadlineTimer bound(5000); breathed.isEmpty() && !bound.hasExpired();) {
        m_item.tick();
    }
    EXPECT_EQ(breathed.count(), 1) << "changes fast";
}

} // namespace
} // namespace corvane::look
