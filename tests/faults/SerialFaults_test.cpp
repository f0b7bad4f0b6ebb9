// SPDX-License-Identifier: MIT
// Downloads from a simulated receiver by the real driver, with every fault at every step of the
// session. A download either ends as a success with the whole file, or as a failure that keeps the
// older file and says what is wrong.

#include "host/transfer/Download.h"
#include "host/words/DownloadMessages.h"
#include "plugin/serialdevice/SimulatedSession.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::Step;
using State = host::OutputReport::State;

/// One download into a file that exists already.
class FaultyDownload {
public:
    explicit FaultyDownload(std::optional<Fault> fault)
    {
        ::setenv("SOURCE_DATE_EPOCH", "1700000000", 1); // all files are of the same time
        simulator::Settings settings{.sentences = support::someSentences()};
        if (fault)
            settings.faults = {*fault};
        support::SimulatedReceiver receiver{settings};
        if (fault && fault->kind == FaultKind::kFlood) // otherwise it never ends
            receiver.unpluggedAfter = 50;
        const auto driver = std::make_shared<support::DriverOnALine>(
            [&receiver] { return std::make_unique<support::SimulatedLine>(receiver); });
        folder_.put("trip.gpx", "old");
        host::DownloadRequest request{.location = "/dev/simulated"};
        request.output = host::OutputRequest{.path = folder_.path("trip.gpx"),
                                             .format = host::findFormat("gpx")};
        report_ = host::download(*driver, request);
    }

    [[nodiscard]] bool succeeded() const { return report_.succeeded(); }
    [[nodiscard]] std::string file() const { return folder_.read("trip.gpx"); }
    [[nodiscard]] State state() const { return report_.output.state; }

    /// The errors for the user, one a line.
    [[nodiscard]] std::string errors() const
    {
        std::string text;
        for (const auto& operation : report_.operations) {
            for (const auto& message : host::operationMessages(operation))
                text += message.isError ? message.text + '\n' : "";
        }
        return text;
    }

private:
    support::TemporaryFolder folder_;
    host::DownloadReport report_;
};

const std::string& wholeFile()
{
    static const std::string file = FaultyDownload{std::nullopt}.file();
    return file;
}

void expectTruth(const Fault& fault)
{
    SCOPED_TRACE(describe(fault));
    const FaultyDownload download{fault};
    if (download.succeeded()) {
        EXPECT_EQ(download.file(), wholeFile());
        EXPECT_EQ(download.errors(), "");
    } else {
        EXPECT_EQ(download.file(), "old");
        EXPECT_NE(download.state(), State::kComplete);
        EXPECT_NE(download.errors(), "");
    }
}

/// The numbers that a fault is tried with: none, and those that make a difference in its step.
std::vector<std::optional<int>> numbersFor(Step step, FaultKind kind)
{
    if (kind == FaultKind::kDelay)
        return {std::nullopt, 2000};
    if (isDataStep(step))
        return {std::nullopt, 0, 2, 3, 4};
    return {std::nullopt, 1, 4};
}

class SerialFaults : public testing::TestWithParam<simulator::Named<Step>> {};

TEST_P(SerialFaults, SuccessMeansTheWholeFileAndFailureTheOlderOne)
{
    for (const auto& kind : simulator::kFaultKinds) {
        if (!applies(kind.value, GetParam().value))
            continue;
        for (const auto number : numbersFor(GetParam().value, kind.value))
            expectTruth({GetParam().value, kind.value, number});
    }
}

INSTANTIATE_TEST_SUITE_P(At, SerialFaults, testing::ValuesIn(simulator::kSteps),
                         support::stepTestName);

TEST(SerialFaultsTest, CleanSessionSucceedsInSilence)
{
    const FaultyDownload download{std::nullopt};
    EXPECT_TRUE(download.succeeded());
    EXPECT_EQ(download.errors(), "");
    EXPECT_EQ(download.state(), State::kComplete);
    EXPECT_THAT(download.file(), testing::HasSubstr("<name>LOOP</name>"));
}

TEST(SerialFaultsTest, FaultsThatTheProtocolRepairsDoNotFail)
{
    for (const char* fault : {"version:delay:300", "ton:lost-ack:1", "waypoint-data:garble",
                              "waypoint-data:truncate:2", "track-data:noise", "route-data:nul"})
        EXPECT_TRUE(FaultyDownload{simulator::parseFault(fault)}.succeeded()) << fault;
}

TEST(SerialFaultsTest, FaultsThatLoseRecordsFail)
{
    for (const char* fault :
         {"track-data:stop:2", "baud:silence", "version:garble", "waypoint-data:garble:0",
          "route-data:stop:1", "track:silence", "version:silence", "waypoint-data:endless"})
        EXPECT_FALSE(FaultyDownload{simulator::parseFault(fault)}.succeeded()) << fault;
}

TEST(SerialFaultsTest, SilenceNoiseAndAnotherSpeedHaveMessagesOfTheirOwn)
{
    const auto errorsOf = [](const char* fault) {
        return FaultyDownload{simulator::parseFault(fault)}.errors();
    };
    EXPECT_THAT(errorsOf("baud:silence"), testing::HasSubstr("but not at 115200 bits per second"));
    EXPECT_THAT(errorsOf("version:endless"), testing::HasSubstr("makes no sense at any speed"));
    EXPECT_THAT(errorsOf("track-data:stop:2"),
                testing::StartsWith("The receiver stopped sending while tracks were read; 2 track "
                                    "points arrived."));
}

} // namespace
