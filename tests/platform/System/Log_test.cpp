// SPDX-License-Identifier: MIT

#include "PrivateMount.h"

#include <gps/Error.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace gps {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Captures the standard error stream during its lifetime.
class StandardError {
public:
    StandardError()
    {
        testing::internal::CaptureStderr();
        setLogToStandardError(true);
    }
    ~StandardError() { (void)text(); }
    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

    const std::string& text()
    {
        setLogToStandardError(false);
        if (!text_)
            text_ = testing::internal::GetCapturedStderr();
        return *text_;
    }

private:
    std::optional<std::string> text_;
};

TEST(Log, StandardErrorIsSilentUntilAskedFor)
{
    testing::internal::CaptureStderr();
    logLine("one");
    setLogToStandardError(true);
    logLine("two");
    setLogToStandardError(false);
    logLine("three");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "two\n");
}

TEST(Log, AnErrorIsALineWithItsSource)
{
    StandardError out;
    const Error error{"domain", -3, {{"key", "value"}}};
    logError("MagellanGPSPlugin", error);
    EXPECT_EQ(out.text(), "MagellanGPSPlugin: " + error.text() + "\n");
}

TEST(Log, LineBreaksAndTerminalCommandsAreReplacedBySpaces)
{
    StandardError out;
    logLine("a\r\nb\x1B[2Jc\x7F\xC3\xA9");
    EXPECT_EQ(out.text(), "a  b [2Jc \xC3\xA9\n");
}

TEST(Log, AFilterReplacesTheUsualReplacement)
{
    StandardError out;
    setLogToStandardError(true,
                          [](std::string_view line) { return "<" + std::string{line} + ">"; });
    logLine("a\tb");
    EXPECT_EQ(out.text(), "<a\tb>\n");
}

TEST(Log, AListenerGetsLinesAndErrorsUnchanged)
{
    const Error error{"domain", 7};
    std::vector<std::string> lines;
    std::vector<const Error*> errors;
    {
        const LogSubscription listening{[&](std::string_view line, const Error* heard) {
            lines.emplace_back(line);
            errors.push_back(heard);
        }};
        logLine("a\r\n");
        logError("Source", error);
    }
    logLine("not received");
    EXPECT_THAT(lines, ElementsAre("a\r\n", "Source: " + error.text()));
    EXPECT_THAT(errors, ElementsAre(nullptr, &error));
}

TEST(Log, EachListenerGetsLinesUntilItsOwnEnd)
{
    int first = 0;
    int second = 0;
    const LogSubscription outer{[&first](std::string_view, const Error*) { ++first; }};
    {
        const LogSubscription inner{[&second](std::string_view, const Error*) { ++second; }};
        logLine("both");
    }
    logLine("one");
    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 1);
}

TEST(Log, LinesOfManyThreadsStayWholeAndReachTheListener)
{
    constexpr int kThreads = 4;
    constexpr int kLines = 250;
    StandardError out;
    int heard = 0; // not atomic: listeners are called one at a time
    {
        const LogSubscription listening{[&heard](std::string_view, const Error*) { ++heard; }};
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([i] {
                for (int line = 0; line < kLines; ++line)
                    logLine(std::string(50, static_cast<char>('a' + i)));
            });
        }
        for (auto& thread : threads)
            thread.join();
    }
    EXPECT_EQ(heard, kThreads * kLines);
    const std::string text = out.text();
    ASSERT_EQ(text.size(), kThreads * kLines * 51U);
    for (std::size_t at = 0; at < text.size(); at += 51)
        ASSERT_EQ(text.substr(at, 51), std::string(50, text[at]) + '\n');
}

TEST(Log, AListenerIsNotCalledAfterItsEndWhileOthersWrite)
{
    std::atomic<bool> stop{false};
    std::thread writer{[&stop] {
        while (!stop)
            logLine("line");
    }};
    for (int i = 0; i < 100; ++i) {
        auto gone = std::make_unique<int>(0);
        {
            const LogSubscription listening{[&gone](std::string_view, const Error*) { ++*gone; }};
        }
        gone.reset(); // a late call would touch freed memory
    }
    stop = true;
    writer.join();
}

/// The system log's socket, in a /dev that only this process sees.
class SystemLog {
public:
    SystemLog()
    {
        sockaddr_un address{AF_UNIX, "/dev/log"};
        const timeval limit{5, 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        listens_ =
            devices_.isMounted() &&
            ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~SystemLog() { ::close(socket_); }
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;

    [[nodiscard]] bool listens() const { return listens_; }

    [[nodiscard]] std::string nextLine() const
    {
        std::string line(10'000, '\0');
        const ssize_t size = ::recv(socket_, line.data(), line.size(), 0);
        line.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return line;
    }

private:
    support::PrivateMount devices_{"/dev", "size=64k"};
    int socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    bool listens_ = false;
};

TEST(Log, TheSystemLogGetsTheLineWithTheProgramsName)
{
    const SystemLog log;
    if (!log.listens())
        GTEST_SKIP() << "mounting is not permitted";
    logLine("a line with 100%s");
    EXPECT_THAT(log.nextLine(), EndsWith(" platform_tests: a line with 100%s"));
}

TEST(Log, TheSystemLogKeepsTheNameThatTheHostHasChosen)
{
    const SystemLog log;
    if (!log.listens())
        GTEST_SKIP() << "mounting is not permitted";
    ::openlog("another-host", LOG_PID, LOG_LOCAL3);
    logLine("a line");
    const auto line = log.nextLine();
    ::closelog();
    EXPECT_THAT(line, StartsWith("<157>")); // facility local3, level notice
    EXPECT_THAT(line, HasSubstr(" another-host["));
    EXPECT_THAT(line, EndsWith("]: a line"));
}

TEST(Log, TheSystemLogGetsTheFrontOfALongLineCutBetweenCharacters)
{
    const SystemLog log;
    if (!log.listens())
        GTEST_SKIP() << "mounting is not permitted";
    logLine(std::string(1000, 'a'));
    EXPECT_THAT(log.nextLine(), EndsWith(": " + std::string(1000, 'a')));
    logLine(std::string(999, 'a') + "\xC3\xA9 and more");
    EXPECT_THAT(log.nextLine(), EndsWith(": " + std::string(999, 'a') + "..."));
    logLine(std::string(998, 'a') + "\xC3\xA9 and more");
    EXPECT_THAT(log.nextLine(), EndsWith(": " + std::string(998, 'a') + "\xC3\xA9..."));
}

} // namespace
} // namespace gps
