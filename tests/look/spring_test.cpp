#include "look/animation.h"
#include "look/spring.h"
#include "look/timing_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::look {
namespace {

/// The same spring, integrated in tiny steps: slow, and independent of the closed form.
Motion integrated(const Spring &spring, Motion motion, double target, double seconds)
{
    const double omega = 2 * std::numbers::pi / spring.response;
    const double stiffness = omega * omega;
    const double damping = 4 * std::numbers::pi * spring.dampingFraction / spring.response;
    const auto force = [&](double value, double velocity) {
        return -stiffness * (value - target) - damping * velocity;
    };
    constexpr int steps = 20'000;
    const double h = seconds / steps;
    for (int step = 0; step < steps; ++step) {
        const double k1v = force(motion.value, motion.velocity);
        const double middleVelocity = motion.velocity + h / 2 * k1v;
        const double k2v = force(motion.value + h / 2 * motion.velocity, middleVelocity);
        motion.value += h * middleVelocity;
        motion.velocity += h * k2v;
    }
    return motion;
}

TEST(Spring, AgreesWithTheEquationOfMotion)
{
    for (const double fraction : {0.0, 0.55, 0.88, 0.9, 1.0, 1.0 + 1e-9, 1.6}) {
        for (const double response : {0.22, 0.5}) {
            for (const double velocity : {0.0, 900.0, -300.0}) {
                SCOPED_TRACE(testing::Message() << fraction << " " << response << " " << velocity);
                const Spring spring{response, fraction};
                for (const double time : {0.0, 0.03, 0.1, 0.4}) {
                    const Motion expected = integrated(spring, {160, velocity}, 620, time);
                    const Motion actual = springMotion(spring, {160, velocity}, 620, time);
                    EXPECT_NEAR(actual.value, expected.value, 0.01);
                    EXPECT_NEAR(actual.velocity, expected.velocity, 1);
                }
            }
        }
    }
}

TEST(Spring, StaysAtTheTargetAfterItsSettlingTime)
{
    for (const double fraction : {0.55, 0.7, 0.88, 1.0, 1.5}) {
        SCOPED_TRACE(fraction);
        const Spring spring{0.42, fraction};
        const Motion start{0, 2000};
        const double settled = springSettlingTime(spring, start, 460, 0.2);
        EXPECT_LT(settled, 3);
        for (int step = 0; step < 400; ++step) {
            const double time = settled + step * 0.005;
            EXPECT_NEAR(springMotion(spring, start, 460, time).value, 460, 0.2);
        }
    }
}

TEST(Spring, CarriesOnSmoothlyWhenInterrupted)
{
    const Animation opening = Animation::spring(0.3, 0.9);
    const Animation closing = Animation::spring(0.42, 0.88);
    const Motion interrupted = opening.motionAt(0.08, {160, 0}, 620);
    ASSERT_GT(interrupted.velocity, 0);
    const Motion just = closing.motionAt(1e-6, interrupted, 160);
    EXPECT_NEAR(just.value, interrupted.value, 0.01);
    EXPECT_NEAR(just.velocity, interrupted.velocity, 1);
    // It still moves outwards for a moment before it turns back.
    EXPECT_GT(closing.motionAt(0.01, interrupted, 160).value, interrupted.value);
}

TEST(TimingCurve, HasTheStandardShapes)
{
    // Reference values of the CSS timing functions with the same control points.
    EXPECT_NEAR(easeInOutCurve.at(0.5), 0.5, 1e-6);
    EXPECT_NEAR(easeInOutCurve.at(0.25), 0.12916, 1e-4);
    EXPECT_NEAR(easeOutCurve.at(0.5), 0.68464, 1e-4);
    EXPECT_NEAR(easeInCurve.at(0.5), 0.31536, 1e-4);
    for (const TimingCurve &curve : {easeInCurve, easeOutCurve, easeInOutCurve}) {
        EXPECT_EQ(curve.at(-1), 0);
        EXPECT_EQ(curve.at(0), 0);
        EXPECT_EQ(curve.at(1), 1);
        EXPECT_EQ(curve.at(2), 1);
    }
}

TEST(Animation, WaitsOutItsDelayAndEndsOnTheTarget)
{
    const Animation late = Animation::easeOut(0.24).delayed(0.16);
    EXPECT_EQ(late.motionAt(0.15, {3, 0}, 7).value, 3);
    EXPECT_GT(late.motionAt(0.2, {3, 0}, 7).value, 3);
    EXPECT_EQ(late.motionAt(0.4, {3, 0}, 7).value, 7);
    EXPECT_NEAR(late.duration({3, 0}, 7, 0.01), 0.4, 1e-9);
}

} // namespace
} // namespace corvane::look
