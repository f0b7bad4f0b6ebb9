// SPDX-License-Identifier: MIT

#include <platform/System/DetachedThread.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <future>
#include <memory>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace gps {
namespace {

TEST(DetachedThread, RunsTheBodyOnAThreadOfItsOwn)
{
    std::promise<std::thread::id> ran;
    EXPECT_EQ(detachNewThread([&ran] { ran.set_value(std::this_thread::get_id()); }), std::nullopt);
    EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST(DetachedThread, KeepsWhatTheBodyHoldsUntilItHasReturned)
{
    struct Held {
        explicit Held(std::promise<bool>& promise) : released(promise) {}
        ~Held() { released.set_value(returning); }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

        std::promise<bool>& released;
        bool returning = false;
    };
    std::promise<void> go;
    std::promise<bool> released;
    auto held = std::make_shared<Held>(released);
    ASSERT_EQ(detachNewThread([held, ready = go.get_future().share()] {
                  ready.wait();
                  held->returning = true;
              }),
              std::nullopt);
    held.reset();
    go.set_value();
    EXPECT_TRUE(released.get_future().get());
}

/// Runs in its own process, as a user to whom the limit on threads applies.
[[noreturn]] void exitWithErrorOfOneThreadTooMany()
{
    const rlimit none{0, 0};
    if (::setrlimit(RLIMIT_NPROC, &none) != 0 || (::geteuid() == 0 && ::setuid(65534) != 0))
        ::_exit(0);
    bool ran = false;
    const auto error = detachNewThread([&ran] { ran = true; });
    ::_exit(error && error->domain() == "NSPOSIXErrorDomain" && error->code() == EAGAIN &&
                    error->description() && !ran
                ? 42
                : 1);
}

TEST(DetachedThread, AThreadThatCannotBeStartedIsASystemError)
{
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(exitWithErrorOfOneThreadTooMany(), testing::ExitedWithCode(42), "");
}

} // namespace
} // namespace gps
