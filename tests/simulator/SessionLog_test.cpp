// SPDX-License-Identifier: MIT
// Entries, their times and JSON lines, and waiting for one.

#include <tools/simulator/SessionLog.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <thread>

namespace {

using simulator::jsonLine;
using simulator::LogEntry;
using simulator::LogKind;
using simulator::SessionLog;

TEST(SessionLog, WritesEntriesAsJson)
{
    EXPECT_EQ(jsonLine({0.25, LogKind::kSent, "PMGNCSM,28", 4800}),
              R"({"time":0.25,"event":"sent","speed":4800,"text":"PMGNCSM,28"})");
}

TEST(SessionLog, HasANameForEachKind)
{
    const char* const names[] = {"opened",     "closed", "speed", "own-speed", "received",
                                 "unreadable", "sent",   "fault", "gave-up",   "hung-up"};
    for (std::size_t kind = 0; kind < std::size(names); ++kind)
        EXPECT_EQ(name(static_cast<LogKind>(kind)), names[kind]);
}

TEST(SessionLog, WritesAnyBytesAsValidJson)
{
    const auto line = jsonLine({1, LogKind::kUnreadable, std::string{"a\0\xFF\n\"", 5}, 1200});
    EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    EXPECT_EQ(line.find_first_of(std::string{"\0\n", 2}), std::string::npos);
}

TEST(SessionLog, NeverGoesBackInTime)
{
    SessionLog log{nullptr};
    const auto now = simulator::Clock::now();
    log.add(LogKind::kSpeed, "", 4800, now);
    log.add(LogKind::kReceived, "", 4800, now - std::chrono::seconds{1});
    EXPECT_EQ(log.entries().at(1).seconds, log.entries().at(0).seconds);
}

TEST(SessionLog, ShowsAWaiterEachEntryOnce)
{
    SessionLog log{nullptr};
    log.add(LogKind::kSent, "1", 4800);
    std::thread adding{[&] {
        for (const auto* text : {"2", "3", "4"})
            log.add(LogKind::kSent, text, 4800);
    }};
    std::string seen;
    EXPECT_TRUE(log.waitFor([&](const LogEntry& entry) { return (seen += entry.text) == "123"; },
                            std::chrono::seconds{30}));
    EXPECT_EQ(seen, "123");
    adding.join();
}

TEST(SessionLog, WaitsNoLongerThanItsLimit)
{
    SessionLog log{nullptr};
    EXPECT_FALSE(log.waitFor([](const LogEntry&) { return true; }, std::chrono::milliseconds{1}));
}

} // namespace
