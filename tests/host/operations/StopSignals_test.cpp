// SPDX-License-Identifier: MIT

#include "host/operations/StopSignals.h"

#include "support/Signals.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <poll.h>
#include <unistd.h>

namespace {

bool isReadable(int file, int timeoutInMilliseconds)
{
    pollfd ready{file, POLLIN, 0};
    return ::poll(&ready, 1, timeoutInMilliseconds) == 1;
}

class StopSignals : public testing::Test {
private:
    support::DefaultSignals defaults_;
};

TEST_F(StopSignals, EachSignalRequestsAStop)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const host::StopSignals stop;
        EXPECT_FALSE(stop.stopRequested());
        EXPECT_EQ(stop.signal(), 0);
        EXPECT_FALSE(isReadable(stop.file(), 0));
        ::kill(::getpid(), signal);
        EXPECT_TRUE(isReadable(stop.file(), 30000)) << signal;
        EXPECT_TRUE(stop.stopRequested());
        EXPECT_EQ(stop.signal(), signal);
    }
}

// Returns once the thread that waits for signals has accepted one sent to the process.
void sendAndAwait(int signal)
{
    ::kill(::getpid(), signal);
    sigset_t pending;
    do {
        std::this_thread::yield();
        ::sigpending(&pending);
    } while (::sigismember(&pending, signal) == 1);
}

TEST_F(StopSignals, IgnoredSignalDoesNotRequestAStop)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const auto before = std::signal(signal, SIG_IGN);
        {
            const host::StopSignals stop;
            sendAndAwait(signal);
            sendAndAwait(signal); // the first has been handled by now
            EXPECT_FALSE(stop.stopRequested()) << signal;
            EXPECT_FALSE(isReadable(stop.file(), 0)) << signal;
        }
        (void)std::signal(signal, before);
    }
}

TEST_F(StopSignals, SignalMaskIsRestored)
{
    sigset_t before;
    sigset_t after;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &before);
    {
        const host::StopSignals stop;
    }
    ::pthread_sigmask(SIG_BLOCK, nullptr, &after);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        EXPECT_EQ(::sigismember(&before, signal), ::sigismember(&after, signal));
}

[[noreturn]] void wait()
{
    for (;;)
        ::pause();
}

TEST_F(StopSignals, SignalEndsTheProgramUntilItIsOnlyARequest)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto signalAtOnce = [] {
        const host::StopSignals stop{[](int signal) { std::_Exit(signal); }};
        ::kill(::getpid(), SIGTERM);
        wait(); // as if for a device
    };
    EXPECT_EXIT(signalAtOnce(), testing::ExitedWithCode(SIGTERM), "");

    host::StopSignals stop{[](int) { ADD_FAILURE() << "the program would have ended"; }};
    stop.requestOnly();
    ::kill(::getpid(), SIGTERM);
    EXPECT_TRUE(isReadable(stop.file(), 30000));
    EXPECT_EQ(stop.signal(), SIGTERM);
}

TEST_F(StopSignals, RequestThatComesAtTheVeryEndIsDropped)
{
    for (int round = 0; round < 200; ++round) { // whichever thread is faster
        const host::StopSignals stop;
        ::kill(::getpid(), round % 2 == 0 ? SIGTERM : SIGHUP);
    }
    sigset_t pending;
    ::sigpending(&pending);
    EXPECT_EQ(::sigismember(&pending, SIGTERM), 0);
    EXPECT_EQ(::sigismember(&pending, SIGHUP), 0);
}

TEST_F(StopSignals, SignalAtTheVeryEndStillEndsTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int signal : {SIGINT, SIGHUP}) {
        const auto signalAndClose = [signal] {
            {
                const host::StopSignals stop{[](int by) { std::_Exit(by); }};
                ::kill(::getpid(), signal);
            }
            std::_Exit(0);
        };
        EXPECT_EXIT(signalAndClose(), testing::ExitedWithCode(signal), "") << signal;
    }
}

TEST_F(StopSignals, SecondSignalEndsAProgramThatDoesNotGetToItsEnd)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto signalTwice = [] {
        const host::StopSignals stop{[](int) {
            ::kill(::getpid(), SIGTERM);
            wait(); // as if for a terminal that was stopped
        }};
        ::kill(::getpid(), SIGINT);
        wait();
    };
    EXPECT_EXIT(signalTwice(), testing::KilledBySignal(SIGTERM), "");
}

TEST_F(StopSignals, SecondSignalEndsTheProgramAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto signalTwice = [] {
        const host::StopSignals stop;
        ::kill(::getpid(), SIGTERM);
        (void)isReadable(stop.file(), 30000);
        ::kill(::getpid(), SIGTERM);
        std::this_thread::sleep_for(std::chrono::seconds{30});
    };
    EXPECT_EXIT(signalTwice(), testing::KilledBySignal(SIGTERM), "");
}

} // namespace
