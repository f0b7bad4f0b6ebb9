// SPDX-License-Identifier: MIT

#include "host/window/devices/DeviceThread.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace {

using host::DeviceThread;

void ignore(const gps::DeviceChanges&) {}

TEST(DeviceThread, RunsJobsInTheirOrderOnOneOtherThread)
{
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    {
        DeviceThread thread{ignore};
        for (int i = 0; i < 100; ++i)
            thread.post([&, i] {
                order.push_back(i);
                threads.push_back(std::this_thread::get_id());
            });
    }
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    EXPECT_EQ(std::vector<std::thread::id>(100, threads.front()), threads);
}

TEST(DeviceThread, RunsAJobThatIsPostedWhileItWaits)
{
    DeviceThread thread{ignore};
    for (int i = 0; i < 3; ++i) {
        std::promise<void> done;
        thread.post([&] { done.set_value(); });
        done.get_future().wait();
    }
}

TEST(DeviceThread, RunsJobsThatAJobPostsBeforeItEnds)
{
    int count = 0;
    {
        DeviceThread thread{ignore};
        thread.post([&] { thread.post([&] { ++count; }); });
    }
    EXPECT_EQ(count, 1);
}

} // namespace
