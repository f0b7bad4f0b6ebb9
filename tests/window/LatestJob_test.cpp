// SPDX-License-Identifier: MIT

#include "host/window/base/LatestJob.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace {

TEST(LatestJob, OnlyTheNewestOfThoseThatWaitIsDone)
{
    std::promise<void> isRunning;
    std::promise<void> mayEnd;
    std::promise<int> done;
    host::LatestJob jobs;
    jobs.start([&] {
        isRunning.set_value();
        mayEnd.get_future().wait();
    });
    isRunning.get_future().wait();
    std::atomic<bool> isDropped{true};
    jobs.start([&] { isDropped = false; });
    jobs.start([&] { done.set_value(2); });
    mayEnd.set_value();
    EXPECT_EQ(done.get_future().get(), 2);
    EXPECT_TRUE(isDropped);
}

TEST(LatestJob, EndWaitsForTheRunningJob)
{
    std::promise<void> isRunning;
    std::atomic<bool> isDone{false};
    {
        host::LatestJob jobs;
        jobs.start([&] {
            isRunning.set_value();
            isDone = true;
        });
        isRunning.get_future().wait();
    }
    EXPECT_TRUE(isDone);
}

} // namespace
