#include "platform/linux/toolkit/qt_main_queue.h"
#include "platform/thread_background_tasks.h"
#include "tests/platform/wait_until.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace corvane::tests {
namespace {

using namespace std::chrono_literals;
using platform::QtMainQueue;

/// Runs everything that is due within the next 20 ms.
void settle()
{
    QtMainQueue queue;
    bool end = false;
    queue.after(20ms, [&] { end = true; });
    ASSERT_TRUE(waitUntil([&] { return end; }));
}

TEST(QtMainQueue, RunsPostedActionsInOrderOnTheMainThreadAndLater)
{
    QtMainQueue queue;
    std::vector<std::thread::id> ranOn;
    queue.post([&] { ranOn.push_back({}); });
    std::thread([&] { queue.post([&] { ranOn.push_back(std::this_thread::get_id()); }); }).join();
    EXPECT_TRUE(ranOn.empty());
    ASSERT_TRUE(waitUntil([&] { return ranOn.size() == 2; }));
    EXPECT_EQ(ranOn, (std::vector<std::thread::id>{{}, std::this_thread::get_id()}));
}

TEST(QtMainQueue, CancellingAfterTheRunLeavesOtherTimersAlone)
{
    QtMainQueue queue;
    bool first = false;
    const auto item = queue.after(0ns, [&] { first = true; });
    ASSERT_TRUE(waitUntil([&] { return first; }));
    // Qt reuses the ids of finished timers.
    int runs = 0;
    for (int index = 0; index < 8; ++index) {
        queue.after(5ms, [&] { ++runs; });
    }
    item->cancel();
    EXPECT_TRUE(waitUntil([&] { return runs == 8; }));
}

TEST(QtMainQueue, CancellingDropsTheActionAndItsCapturesAlsoFromWithin)
{
    QtMainQueue queue;
    const auto captured = std::make_shared<int>(0);
    for (const auto &item : {queue.after(1ms, [captured] { ++*captured; }),
                             queue.every(1ms, [captured] { ++*captured; })}) {
        item->cancel();
        item->cancel();
    }
    EXPECT_EQ(captured.use_count(), 1);
    int runs = 0;
    std::shared_ptr<platform::WorkItem> item;
    item = queue.every(1ms, [&runs, &item, last = std::make_shared<int>(3)] {
        if (++runs == *last) {
            item->cancel();
        }
        // Still alive after its own cancellation.
        EXPECT_EQ(*last, 3);
    });
    ASSERT_TRUE(waitUntil([&] { return runs == 3; }));
    settle();
    EXPECT_EQ(runs, 3);
    EXPECT_EQ(*captured, 0);
}

TEST(QtMainQueue, DropsEverythingWithItself)
{
    auto queue = std::make_unique<QtMainQueue>();
    int runs = 0;
    const auto item = queue->every(1ms, [&] { ++runs; });
    queue->after(1ms, [&] { ++runs; });
    queue->post([&] { queue.reset(); });
    queue->post([&] { ++runs; });
    settle();
    EXPECT_EQ(queue, nullptr);
    EXPECT_EQ(runs, 0);
    item->cancel();
}

TEST(ThreadBackgroundTasks, AreBusyUntilTheirWorkIsDone)
{
    platform::ThreadBackgroundTasks tasks;
    EXPECT_FALSE(tasks.isBusy());
    std::promise<void> answer;
    std::thread::id ranOn;
    tasks.run([&, answered = answer.get_future().share()] {
        answered.wait();
        ranOn = std::this_thread::get_id();
    });
    EXPECT_TRUE(tasks.isBusy());
    answer.set_value();
    ASSERT_TRUE(waitUntil([&] { return !tasks.isBusy(); }));
    EXPECT_NE(ranOn, std::this_thread::get_id());
}

} // namespace
} // namespace corvane::tests
