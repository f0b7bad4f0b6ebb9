// SPDX-License-Identifier: MIT
// Whole downloads by the serial driver from a simulated receiver, on a line in memory.

#include "SimulatedSession.h"

#include <support/ActingReceiver.h>
#include <support/LogCapture.h>
#include <support/MemoryLine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace magellan {
namespace {

using simulator::LogKind;
using support::DriverOnALine;
using support::SimulatedSession;
using support::someSentences;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

TEST(SerialDownload, DownloadsEverythingFromAReceiverWithoutHandshaking)
{
    const SimulatedSession session{{.sentences = someSentences()}};
    EXPECT_THAT(session.callNames(),
                ElementsAre("gpsStateChange", "startTransfer", "wayPoint", "wayPoint", "wayPoint",
                            "endTransfer", "startTransfer", "newTrack", "trackPoint", "newTrack",
                            "trackPoint", "trackPoint", "endTransfer", "startTransfer", "newRoute",
                            "wayPoint", "wayPoint", "wayPoint", "newRoute", "wayPoint", "wayPoint",
                            "endTransfer", "gpsStateChange"));
    const auto calls = session.calls();
    EXPECT_EQ(calls.front(), "gpsStateChange 1");
    EXPECT_THAT(calls[1], "startTransfer 3");
    EXPECT_THAT(calls[6], "startTransfer 1");
    EXPECT_EQ(calls[7], "newTrack {name = \"Current Track\"}");
    EXPECT_EQ(calls[9], "newTrack {name = \"DAY 1\"}");
    EXPECT_THAT(calls[13], "startTransfer 2");
    EXPECT_THAT(calls[15], AllOf(HasSubstr("CAMP"), HasSubstr("by the lake")));
    EXPECT_EQ(calls.back(), "gpsStateChange 0");
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,HANDON @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,WAYPOINT @115200",
                            "PMGNCMD,TRACK,2 @115200", "PMGNCMD,ROUTE @115200",
                            "PMGNCMD,TOFF @115200", "PMGNCMD,HANDOFF @115200",
                            "PMGNCMD,BAUD,4800 @115200"));
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(), ElementsAre(4800, 115200, 4800));
}

TEST(SerialDownload, SendsNoHandOnIfHandshakingIsAlreadyOn)
{
    const SimulatedSession session{{.handshake = true, .sentences = someSentences()}};
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,WAYPOINT @115200",
                            "PMGNCMD,TRACK,2 @115200", "PMGNCMD,ROUTE @115200",
                            "PMGNCMD,TOFF @115200", "PMGNCMD,HANDOFF @115200",
                            "PMGNCMD,BAUD,4800 @115200"));
    EXPECT_THAT(session.calls(), SizeIs(23));
}

TEST(SerialDownload, WithoutOptionsOnlySwitchesOnAndOff)
{
    const SimulatedSession session{{.sentences = someSentences()}, {}};
    EXPECT_THAT(session.calls(), ElementsAre("gpsStateChange 1", "gpsStateChange 0"));
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,HANDON @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,TOFF @115200",
                            "PMGNCMD,HANDOFF @115200", "PMGNCMD,BAUD,4800 @115200"));
}

TEST(SerialDownload, FindsAReceiverAtTheLastSpeedAndLeavesItThere)
{
    const SimulatedSession session{{.speed = 57600}, {}};
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @57600", "PMGNCMD,HANDON @57600", "PMGNCMD,TON @57600",
                            "PMGNCMD,BAUD,115200 @57600", "PMGNCMD,TOFF @115200",
                            "PMGNCMD,HANDOFF @115200", "PMGNCMD,BAUD,57600 @115200"));
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(),
                ElementsAre(4800, 115200, 1200, 9600, 19200, 57600, 115200, 57600));
    // Five attempts at each of the five speeds before, which a receiver of another speed cannot
    // read.
    const auto log = session.log();
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.kind == LogKind::kUnreadable; }),
              25);
}

TEST(SerialDownload, WithoutAnyAnswerRunsToTheEndAndSetsTheSpeedToZero)
{
    const SimulatedSession session{{.speed = 2400}}; // a speed that the probe does not try
    EXPECT_THAT(session.calls(), ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                                             "startTransfer 1", "endTransfer 1", "startTransfer 2",
                                             "endTransfer 2", "gpsStateChange 0"));
    EXPECT_THAT(session.commands(), IsEmpty());
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(), ElementsAre(4800, 115200, 1200, 9600, 19200, 57600, 115200, 0));
    const auto log = session.log();
    // 30 times VERSION, HANDON once, and eight commands five times each.
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.kind == LogKind::kUnreadable; }),
              71);
}

TEST(SerialDownload, AcknowledgesEachSentenceAndEveryEnd)
{
    const SimulatedSession session{{.sentences = someSentences()}};
    const auto log = session.log();
    const auto acknowledged = std::count_if(log.begin(), log.end(), [](const auto& entry) {
        return entry.kind == LogKind::kReceived && entry.text.rfind("PMGNCSM,", 0) == 0;
    });
    EXPECT_EQ(acknowledged, 12); // nine sentences and three ends
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.text == "PMGNCSM,3D"; }),
              3);
}

TEST(SerialDownload, LogsTheLinesThatFollowItsSwitches)
{
    const support::LogCapture logged;
    const SimulatedSession session{{.chatter = true}, {}};
    EXPECT_THAT(logged.lines(), IsSupersetOf({StartsWith("Response after TON = $"),
                                              StartsWith("Response after TOFF = $"),
                                              StartsWith("Response after HANDOFF = $"),
                                              StartsWith("Response after Setting rate back = $")}));
    EXPECT_THAT(logged.lines(), Contains(StartsWith("Response after TON = $")).Times(2));
}

TEST(SerialDownload, ReportsNoWaypointsIfOnlyRoutesAreRequested)
{
    const SimulatedSession session{{.sentences = someSentences()}, {{"routes", true}}};
    EXPECT_THAT(session.callNames(),
                ElementsAre("gpsStateChange", "startTransfer", "newRoute", "wayPoint", "wayPoint",
                            "wayPoint", "newRoute", "wayPoint", "wayPoint", "endTransfer",
                            "gpsStateChange"));
    EXPECT_EQ(session.calls()[1], "startTransfer 2");
    EXPECT_THAT(session.commands(), Contains("PMGNCMD,WAYPOINT @115200"));
    EXPECT_THAT(session.commands(), Not(Contains(HasSubstr("TRACK"))));
}

std::vector<std::string> callsOf(DriverOnALine& driver)
{
    const auto status = std::make_shared<support::RecordingReceiver>();
    driver.download(status, {});
    return status->calls();
}

TEST(FailingSerialDownload, AMissingSerialObjectIsAnErrorOfItsOwn)
{
    DriverOnALine driver{[] { return nullptr; }};
    const gps::Error expected{
        "com.Orvane.GPSPlugin.ErrorDomain",
        -1,
        {{gps::kErrorDescriptionKey, "Couldn't initialize serial code"},
         {gps::kErrorSuggestionKey, "Please try again or report this error to Orvane"}}};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + expected.text(), "gpsStateChange 0"));
}

TEST(FailingSerialDownload, AThrownErrorObjectIsReportedUnchanged)
{
    const gps::Error thrown{"some.domain", 77, {{gps::kErrorDescriptionKey, "as it is"}}};
    DriverOnALine driver{[&]() -> std::unique_ptr<gps::OrvSerial> { throw thrown; }};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + thrown.text(), "gpsStateChange 0"));
}

TEST(FailingSerialDownload, APlatformExceptionIsErrorMinusFourWithoutText)
{
    DriverOnALine driver{
        []() -> std::unique_ptr<gps::OrvSerial> { throw std::runtime_error{"secret"}; }};
    const gps::Error expected{"com.Orvane.GPSPlugin.ErrorDomain", -4};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + expected.text(), "gpsStateChange 0"));
}

TEST(FailingSerialDownload, AnyOtherExceptionLeavesTheWorkerWithoutAReport)
{
    DriverOnALine driver{[]() -> std::unique_ptr<gps::OrvSerial> { throw 42; }};
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_THROW(driver.download(status, {}), int);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 1"));
}

/// A line whose reads throw something that is not an exception of this system.
class StrangeLine : public support::MemoryLine {
public:
    using MemoryLine::MemoryLine;
    [[nodiscard]] std::optional<std::string> readStringTo(std::string_view, float) override
    {
        throw 42;
    }
};

/// Runs a session on a StrangeLine. Exits with 42 if the process ends with the port closed.
[[noreturn]] void exitWithTheStateOfThePort()
{
    ::alarm(30);
    static support::MemoryLineLog log;
    std::set_terminate([] { ::_exit(log.calls.back() == "close" ? 42 : 1); });
    const auto driver = std::make_shared<DriverOnALine>(
        []() -> std::unique_ptr<gps::OrvSerial> { return std::make_unique<StrangeLine>(log); });
    (void)driver->gpsRunAcquire(std::make_shared<support::RecordingReceiver>(), {});
    for (;;)
        ::pause();
}

TEST(FailingSerialDownload, AnyOtherExceptionLeavesTheWorkerAfterThePortWasClosed)
{
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(exitWithTheStateOfThePort(), testing::ExitedWithCode(42), "");
}

/// Adds its calls to those of a line.
class StatusOnTheLine : public support::RecordingReceiver {
public:
    explicit StatusOnTheLine(std::vector<std::string>& calls) : calls_(calls) {}
    void error(const gps::Error& /*error*/) override { calls_.emplace_back("error"); }
    void gpsStateChange(std::int32_t state) override
    {
        calls_.push_back("state " + std::to_string(state));
    }

private:
    std::vector<std::string>& calls_;
};

TEST(FailingSerialDownload, ThePortIsClosedAfterTheErrorAndBeforeTheEnd)
{
    support::MemoryLineLog log;
    DriverOnALine driver{[&log]() -> std::unique_ptr<gps::OrvSerial> {
        auto line = std::make_unique<support::MemoryLine>(log);
        line->failsAfter(0);
        return line;
    }};
    driver.download(std::make_shared<StatusOnTheLine>(log.calls), {});
    ASSERT_GE(log.calls.size(), 4U);
    EXPECT_THAT(std::vector<std::string>(log.calls.end() - 4, log.calls.end()),
                ElementsAre("read", "error", "close", "state 0"));
}

TEST(FailingSerialDownload, AStatusObjectThatThrowsEndsItAfterTheReceiversStateWasRestored)
{
    support::SimulatedReceiver receiver{{.sentences = someSentences()}};
    DriverOnALine driver{[&] { return std::make_unique<support::SimulatedLine>(receiver); }};
    const auto status = std::make_shared<support::ActingReceiver>(
        "wayPoint", [] { throw std::runtime_error{"the host's"}; });
    driver.download(status, SimulatedSession::kEverything);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 1", "startTransfer 3",
                                             StartsWith("wayPoint"), "gpsStateChange 0"));
    const auto log = receiver.log.entries();
    EXPECT_TRUE(std::any_of(log.begin(), log.end(), [](const auto& entry) {
        return entry.kind == LogKind::kReceived && entry.text == "PMGNCMD,BAUD,4800";
    }));
}

TEST(FailingSerialDownload, ATooShortSentenceIsErrorMinusFourAndLeavesItsBracketOpen)
{
    const SimulatedSession session{{.sentences = {.waypoints = {"PMGNWPL,4600.0,N"}}}};
    EXPECT_THAT(session.callNames(),
                ElementsAre("gpsStateChange", "startTransfer", "error", "gpsStateChange"));
    const gps::Error interrupted{"com.Orvane.GPSPlugin.ErrorDomain", -4};
    EXPECT_EQ(session.calls()[2], "error " + interrupted.text());
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.commands(), Not(Contains(HasSubstr("TOFF")))); // straight to the end
}

} // namespace
} // namespace magellan
