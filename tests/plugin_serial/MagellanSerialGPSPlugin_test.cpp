// SPDX-License-Identifier: MIT
// What the serial driver does with a real port: a simulated receiver's pseudo-terminal. The
// sessions themselves are tested on a line in memory.

#include <gps/Error.h>
#include <gps/Value.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <plugin/serialdevice/MagellanSerialGPSPlugin.h>
#include <plugin/serialdevice/SimulatedSession.h>
#include <support/RecordingReceiver.h>
#include <support/TestPorts.h>
#include <tools/simulator/Receiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace magellan {
namespace {

using simulator::LogKind;
using support::RecordingReceiver;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// A download from a port.
struct Download {
    explicit Download(const std::string& port, const gps::Dictionary& options = {})
    {
        driver->setSerialPort(gps::Dictionary{{"location", port}});
        EXPECT_EQ(driver->gpsRunAcquire(status, options), std::nullopt);
    }

    std::shared_ptr<MagellanSerialGPSPlugin> driver = std::make_shared<MagellanSerialGPSPlugin>();
    std::shared_ptr<RecordingReceiver> status = std::make_shared<RecordingReceiver>();
};

bool sees(const simulator::Receiver& receiver, LogKind kind)
{
    return receiver.waitFor([=](const auto& entry) { return entry.kind == kind; });
}

TEST(SerialPort, IsReadByAWorkerAndThenClosedSoThatAnotherProgramCanOpenIt)
{
    simulator::Receiver receiver{
        {.sentences = {.waypoints = {"PMGNWPL,4600.0,N,00700.0,E,0,M,CAMP,,a"}}}};
    const Download download{receiver.path(), {{"waypoints", true}}};
    ASSERT_TRUE(download.status->waitUntilIdle());
    EXPECT_THAT(download.status->calls(),
                ElementsAre("gpsStateChange 1", "startTransfer 3", StartsWith("wayPoint"),
                            "endTransfer 3", "gpsStateChange 0"));
    EXPECT_THAT(download.status->threads(),
                AllOf(SizeIs(1), Not(Contains(std::this_thread::get_id()))));
    EXPECT_EQ(gps::OrvSerial::create()->openWithDevicePath(receiver.path().c_str()), 0);
}

TEST(SerialPort, IsReportedIfItIsInUse)
{
    simulator::Receiver receiver{{}};
    const auto other = gps::OrvSerial::create();
    ASSERT_EQ(other->openWithDevicePath(receiver.path().c_str()), 0);
    const support::TestPorts ports{{receiver.path()}};
    const auto driver = std::make_shared<MagellanSerialGPSPlugin>();
    driver->makeSerialPortList();
    driver->setSerialPort(*driver->serialPortList().back().as<gps::Dictionary>());
    const auto status = std::make_shared<RecordingReceiver>();
    EXPECT_EQ(driver->gpsRunAcquire(status, {{"tracks", true}}), std::nullopt);
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

TEST(SerialPort, ThatIsUnpluggedEndsTheSession)
{
    auto receiver = std::make_unique<simulator::Receiver>(simulator::Settings{});
    const Download download{receiver->path()};
    ASSERT_TRUE(sees(*receiver, LogKind::kReceived));
    receiver.reset();
    ASSERT_TRUE(download.status->waitUntilIdle());
    const gps::Error interrupted{"com.Orvane.GPSPlugin.ErrorDomain", -4};
    EXPECT_THAT(download.status->calls(),
                ElementsAre("gpsStateChange 1", "error " + interrupted.text(), "gpsStateChange 0"));
}

TEST(SerialPort, IsClosedAfterASessionThatFailed)
{
    simulator::Receiver receiver{{.sentences = {.waypoints = {"PMGNWPL,4600.0,N"}}}};
    const Download download{receiver.path(), {{"waypoints", true}}};
    ASSERT_TRUE(download.status->waitUntilIdle());
    EXPECT_TRUE(sees(receiver, LogKind::kClosed));
}

/// What the receiver understood and sent, without the times.
std::vector<std::string> exchangeOf(const std::vector<simulator::LogEntry>& log)
{
    std::vector<std::string> lines;
    for (const auto& entry : log) {
        if (entry.kind == LogKind::kReceived || entry.kind == LogKind::kSent)
            lines.push_back(std::string{name(entry.kind)} + ' ' + entry.text + " @" +
                            std::to_string(entry.speed));
    }
    return lines;
}

TEST(SerialPort, AndALineInMemoryGiveTheSameSession)
{
    const simulator::Settings settings{.sentences = support::someSentences()};
    const simulator::Receiver receiver{settings};
    const Download download{receiver.path(), support::SimulatedSession::kEverything};
    const support::SimulatedSession simulated{settings};
    ASSERT_TRUE(download.status->waitUntilIdle());
    EXPECT_EQ(download.status->calls(), simulated.calls());
    EXPECT_EQ(exchangeOf(receiver.log()), exchangeOf(simulated.log()));
}

} // namespace
} // namespace magellan
