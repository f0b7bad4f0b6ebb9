// SPDX-License-Identifier: MIT
// Whole sessions over a pseudo-terminal against a simulated receiver. Each takes seconds, since a
// session waits for lines that a receiver may or may not send.

#include <platform/OrvUtils/OrvSerial.h>
#include <support/LogCapture.h>
#include <support/TestPorts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <plugin_serial/Session.h>

namespace magellan {
namespace {

using simulator::LogKind;
using support::Session;
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

TEST(DownloadSession, DownloadsEverythingFromAReceiverWithoutHandshaking)
{
    const Session session{{.sentences = someSentences()}};
    ASSERT_TRUE(session.ends());
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
    EXPECT_THAT(session.status().threads(),
                AllOf(SizeIs(1), Not(Contains(std::this_thread::get_id()))));
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,HANDON @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,WAYPOINT @115200",
                            "PMGNCMD,TRACK,2 @115200", "PMGNCMD,ROUTE @115200",
                            "PMGNCMD,TOFF @115200", "PMGNCMD,HANDOFF @115200",
                            "PMGNCMD,BAUD,4800 @115200"));
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(), ElementsAre(4800, 115200, 4800));
}

TEST(DownloadSession, SendsNoHandOnIfHandshakingIsAlreadyOn)
{
    const Session session{{.handshake = true, .sentences = someSentences()}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,WAYPOINT @115200",
                            "PMGNCMD,TRACK,2 @115200", "PMGNCMD,ROUTE @115200",
                            "PMGNCMD,TOFF @115200", "PMGNCMD,HANDOFF @115200",
                            "PMGNCMD,BAUD,4800 @115200"));
    EXPECT_THAT(session.calls(), SizeIs(23));
}

TEST(DownloadSession, WithoutOptionsOnlySwitchesOnAndOff)
{
    const Session session{{.sentences = someSentences()}, {}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.calls(), ElementsAre("gpsStateChange 1", "gpsStateChange 0"));
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @4800", "PMGNCMD,HANDON @4800", "PMGNCMD,TON @4800",
                            "PMGNCMD,BAUD,115200 @4800", "PMGNCMD,TOFF @115200",
                            "PMGNCMD,HANDOFF @115200", "PMGNCMD,BAUD,4800 @115200"));
}

TEST(DownloadSession, FindsAReceiverAtTheLastSpeedAndLeavesItThere)
{
    const Session session{{.speed = 57600}, {}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.commands(),
                ElementsAre("PMGNCMD,VERSION @57600", "PMGNCMD,HANDON @57600", "PMGNCMD,TON @57600",
                            "PMGNCMD,BAUD,115200 @57600", "PMGNCMD,TOFF @115200",
                            "PMGNCMD,HANDOFF @115200", "PMGNCMD,BAUD,57600 @115200"));
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(),
                ElementsAre(4800, 115200, 1200, 9600, 19200, 57600, 115200, 57600));
    // Five attempts at each of the five speeds before, which a receiver of another speed cannot
    // read.
    const auto log = session.receiver().log();
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.kind == LogKind::kUnreadable; }),
              25);
}

TEST(DownloadSession, WithoutAnyAnswerRunsToTheEndAndSetsTheSpeedToZero)
{
    const Session session{{.speed = 2400}}; // a speed that the probe does not try
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.calls(), ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                                             "startTransfer 1", "endTransfer 1", "startTransfer 2",
                                             "endTransfer 2", "gpsStateChange 0"));
    EXPECT_THAT(session.commands(), IsEmpty());
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.speeds(), ElementsAre(4800, 115200, 1200, 9600, 19200, 57600, 115200, 0));
    const auto log = session.receiver().log();
    // 30 times VERSION, HANDON once, and eight commands five times each.
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.kind == LogKind::kUnreadable; }),
              71);
}

TEST(DownloadSession, AcknowledgesEachSentenceAndEveryEnd)
{
    const Session session{{.sentences = someSentences()}};
    ASSERT_TRUE(session.ends());
    const auto log = session.receiver().log();
    const auto acknowledged = std::count_if(log.begin(), log.end(), [](const auto& entry) {
        return entry.kind == LogKind::kReceived && entry.text.rfind("PMGNCSM,", 0) == 0;
    });
    EXPECT_EQ(acknowledged, 12); // nine sentences and three ends
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& entry) { return entry.text == "PMGNCSM,3D"; }),
              3);
}

TEST(DownloadSession, LogsTheLinesThatFollowItsSwitches)
{
    const support::LogCapture logged;
    const Session session{{.chatter = true}, {}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(logged.lines(), IsSupersetOf({StartsWith("Response after TON = $"),
                                              StartsWith("Response after TOFF = $"),
                                              StartsWith("Response after HANDOFF = $"),
                                              StartsWith("Response after Setting rate back = $")}));
    EXPECT_THAT(logged.lines(), Contains(StartsWith("Response after TON = $")).Times(2));
}

TEST(DownloadSession, ReportsNoWaypointsIfOnlyRoutesAreRequested)
{
    const Session session{{.sentences = someSentences()}, {{"routes", true}}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.callNames(),
                ElementsAre("gpsStateChange", "startTransfer", "newRoute", "wayPoint", "wayPoint",
                            "wayPoint", "newRoute", "wayPoint", "wayPoint", "endTransfer",
                            "gpsStateChange"));
    EXPECT_EQ(session.calls()[1], "startTransfer 2");
    EXPECT_THAT(session.commands(), Contains("PMGNCMD,WAYPOINT @115200"));
    EXPECT_THAT(session.commands(), Not(Contains(HasSubstr("TRACK"))));
}

TEST(DownloadSession, APortInUseIsReportedAsAnErrorBeforeIdle)
{
    simulator::Receiver receiver{{}};
    const auto other = gps::OrvSerial::create();
    ASSERT_EQ(other->openWithDevicePath(receiver.path().c_str()), 0);
    const support::TestPorts ports{{receiver.path()}};
    const auto driver = std::make_shared<MagellanSerialGPSPlugin>();
    driver->makeSerialPortList();
    driver->setSerialPort(*driver->serialPortList().back().as<gps::Dictionary>());
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_EQ(driver->gpsRunAcquire(status, Session::kEverything), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    const gps::Error expected{
        "com.Orvane.GPSPlugin.ErrorDomain",
        -1,
        {{gps::kErrorDescriptionKey, "Couldn't open communications port " + receiver.path()},
         {gps::kErrorSuggestionKey, "The port might be in use by another program"}},
    };
    EXPECT_THAT(status->calls(),
                ElementsAre("gpsStateChange 1", "error " + expected.text(), "gpsStateChange 0"));
}

TEST(DownloadSession, ClosesThePortAtTheEndSoThatAnotherProgramCanOpenIt)
{
    const Session session{{}, {}};
    ASSERT_TRUE(session.ends());
    EXPECT_EQ(gps::OrvSerial::create()->openWithDevicePath(session.receiver().path().c_str()), 0);
}

/// A driver whose worker fails.
class FailingDriver : public MagellanSerialGPSPlugin {
public:
    explicit FailingDriver(std::function<std::unique_ptr<gps::OrvSerial>()> make)
        : make_(std::move(make))
    {
        setSerialPort(gps::Dictionary{{"location", "/dev/nowhere"}});
    }
    using MagellanSerialGPSPlugin::runAcquire;

protected:
    std::unique_ptr<gps::OrvSerial> makeSerial() const override { return make_(); }

private:
    std::function<std::unique_ptr<gps::OrvSerial>()> make_;
};

std::vector<std::string> callsOf(FailingDriver& driver)
{
    const auto status = std::make_shared<support::RecordingReceiver>();
    driver.runAcquire(
        {{"location", "/dev/nowhere"}, {"output", gps::GPSPlugInProtocol::Status{status}}});
    return status->calls();
}

TEST(FailingSession, AMissingSerialObjectIsAnErrorOfItsOwn)
{
    FailingDriver driver{[] { return nullptr; }};
    const gps::Error expected{
        "com.Orvane.GPSPlugin.ErrorDomain",
        -1,
        {{gps::kErrorDescriptionKey, "Couldn't initialize serial code"},
         {gps::kErrorSuggestionKey, "Please try again or report this error to Orvane"}}};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + expected.text(), "gpsStateChange 0"));
}

TEST(FailingSession, AThrownErrorObjectIsReportedUnchanged)
{
    const gps::Error thrown{"some.domain", 77, {{gps::kErrorDescriptionKey, "as it is"}}};
    FailingDriver driver{[&]() -> std::unique_ptr<gps::OrvSerial> { throw thrown; }};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + thrown.text(), "gpsStateChange 0"));
}

TEST(FailingSession, APlatformExceptionIsErrorMinusFourWithoutText)
{
    FailingDriver driver{
        []() -> std::unique_ptr<gps::OrvSerial> { throw std::runtime_error{"secret"}; }};
    const gps::Error expected{"com.Orvane.GPSPlugin.ErrorDomain", -4};
    EXPECT_THAT(callsOf(driver),
                ElementsAre("gpsStateChange 1", "error " + expected.text(), "gpsStateChange 0"));
}

TEST(FailingSession, AnyOtherExceptionLeavesTheWorkerWithoutAReport)
{
    FailingDriver driver{[]() -> std::unique_ptr<gps::OrvSerial> { throw 42; }};
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_THROW(driver.runAcquire({{"location", "/dev/nowhere"},
                                    {"output", gps::GPSPlugInProtocol::Status{status}}}),
                 int);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 1"));
}

TEST(FailingSession, ATooShortSentenceIsErrorMinusFourAndLeavesItsBracketOpen)
{
    const Session session{{.sentences = {.waypoints = {"PMGNWPL,4600.0,N"}}}};
    ASSERT_TRUE(session.ends());
    EXPECT_THAT(session.callNames(),
                ElementsAre("gpsStateChange", "startTransfer", "error", "gpsStateChange"));
    const gps::Error interrupted{"com.Orvane.GPSPlugin.ErrorDomain", -4};
    EXPECT_EQ(session.calls()[2], "error " + interrupted.text());
    EXPECT_TRUE(session.isClosed());
    EXPECT_THAT(session.commands(), Not(Contains(HasSubstr("TOFF")))); // straight to the end
}

} // namespace
} // namespace magellan
