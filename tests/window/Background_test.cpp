// SPDX-License-Identifier: MIT

#include "host/window/base/Background.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <glib.h>

namespace {

// Handles what is due on the main loop until a condition holds.
void runUntil(const std::function<bool()>& condition)
{
    while (!condition())
        g_main_context_iteration(nullptr, TRUE);
}

TEST(Background, WorksOnAnotherThreadAndShowsTheResultOnThisOne)
{
    host::Background background;
    std::thread::id worked;
    std::thread::id shown;
    background.run([&] {
        worked = std::this_thread::get_id();
        return [&] { shown = std::this_thread::get_id(); };
    });
    runUntil([&] { return shown != std::thread::id{}; });
    EXPECT_NE(worked, std::this_thread::get_id());
    EXPECT_EQ(shown, std::this_thread::get_id());
}

TEST(Background, ShowsTheLatestResultOnly)
{
    host::Background background;
    std::promise<void> begun;
    std::promise<void> release;
    std::vector<int> worked;
    std::vector<int> shown;
    const auto work = [&](int number) {
        background.run([&, number] {
            if (number == 1) {
                begun.set_value();
                release.get_future().wait();
            }
            worked.push_back(number);
            return [&, number] { shown.push_back(number); };
        });
    };
    work(1);
    begun.get_future().wait();
    work(2);
    work(3);
    release.set_value();
    runUntil([&] { return !shown.empty(); });
    EXPECT_EQ(worked, (std::vector<int>{1, 3})) << "2 had not begun when 3 came";
    EXPECT_EQ(shown, std::vector<int>{3});
}

TEST(Background, ShowsNothingAfterItsEnd)
{
    bool isShown = false;
    std::promise<void> begun;
    auto background = std::make_unique<host::Background>();
    background->run([&] {
        begun.set_value();
        return [&] { isShown = true; };
    });
    begun.get_future().wait();
    background.reset();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    EXPECT_FALSE(isShown);
}

TEST(Background, OnlyTheNewestOfTheJobsThatWaitIsDone)
{
    std::promise<void> isRunning;
    std::promise<void> mayEnd;
    std::promise<int> done;
    host::Background background;
    background.start([&] {
        isRunning.set_value();
        mayEnd.get_future().wait();
    });
    isRunning.get_future().wait();
    std::atomic<bool> isDropped{true};
    background.start([&] { isDropped = false; });
    background.start([&] { done.set_value(2); });
    mayEnd.set_value();
    EXPECT_EQ(done.get_future().get(), 2);
    EXPECT_TRUE(isDropped);
}

TEST(Background, EndWaitsForTheRunningJob)
{
    std::promise<void> isRunning;
    std::atomic<bool> isDone{false};
    {
        host::Background background;
        background.start([&] {
            isRunning.set_value();
            isDone = true;
        });
        isRunning.get_future().wait();
    }
    EXPECT_TRUE(isDone);
}

} // namespace
