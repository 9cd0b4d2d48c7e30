#include "look/animated_value.h"

#include "look/breath.h"
#include "tests/fakes/table.h"

#include <QAnimationDriver>
#include <QCoreApplication>

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

/// A frame clock that a test moves by hand.
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

    m_transaction.run(Animation::easeOut(0.16), [&] { m_value.setTarget(20); });
    EXPECT_EQ(m_value.value(), 10);
    EXPECT_TRUE(m_value.isRunning());
    frames(5);
    EXPECT_GT(m_value.value(), 12);
    EXPECT_LT(m_value.value(), 20);
    frames(8);
    EXPECT_EQ(m_value.value(), 20);
    EXPECT_FALSE(m_value.isRunning());
}

TEST_F(AnimatedValueTest, TurnsRoundInFlightWithoutAJump)
{
    m_value.useSpring(0.3, 0.9);
    m_value.setTarget(100);
    frames(5);
    const double before = m_value.value();
    ASSERT_GT(before, 10);
    ASSERT_LT(before, 100);
    m_value.setTarget(0);
    EXPECT_EQ(m_value.value(), before);
    m_frames.advanceBy(1);
    m_frames.advanceBy(1);
    EXPECT_NEAR(m_value.value(), before, 5);
    frames(120);
    EXPECT_EQ(m_value.value(), 0);
    EXPECT_FALSE(m_value.isRunning());
}

TEST_F(AnimatedValueTest, MayBeSentOnByWhoHearsOfItsArrival)
{
    m_value.useEaseOut(0.05);
    QObject::connect(&m_value, &AnimatedValue::valueChanged, &m_value, [&] {
        if (m_value.value() == 1) {
            m_value.setTarget(2);
        }
    });
    m_value.setTarget(1);
    frames(5);
    EXPECT_TRUE(m_value.isRunning());
    frames(10);
    EXPECT_EQ(m_value.value(), 2);
}

TEST(Transaction, IsOverWhenItsChangeIsMade)
{
    Transaction transaction;
    transaction.run(Animation::easeIn(1), [&] {
        transaction.run(Animation::spring(0.3, 0.9),
                        [&] { EXPECT_EQ(transaction.current(), Animation::spring(0.3, 0.9)); });
        EXPECT_EQ(transaction.current(), Animation::easeIn(1));
    });
    EXPECT_TRUE(transaction.current().isImmediate());
}

TEST(Breath, GoesUpInOnePeriodAndDownInTheNext)
{
    for (const auto &[seconds, opacity, scale] : tests::Table<double, double, double>{
             {0, 0.55, 0.96}, {1.2, 0.775, 0.98}, {2.4, 1, 1}, {3.6, 0.775, 0.98}, {7.2, 1, 1}}) {
        SCOPED_TRACE(seconds);
        const Breath breath = breathAt(seconds, 2.4);
        EXPECT_NEAR(breath.opacity, opacity, 1e-6);
        EXPECT_NEAR(breath.scale, scale, 1e-6);
    }
}

} // namespace
} // namespace corvane::look
