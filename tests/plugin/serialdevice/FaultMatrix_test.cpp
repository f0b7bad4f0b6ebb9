// SPDX-License-Identifier: MIT
// Every fault at every step of a session. Whatever the receiver does, the session ends, reports to
// the host and closes the port, and the records before the fault arrive.

#include "SessionTexts.h"
#include "SimulatedSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::Step;
using support::kInterrupted;
using support::SimulatedSession;
using testing::ElementsAre;

/// Only the brackets and the calls outside them.
std::vector<std::string> frameOf(const SimulatedSession& session)
{
    std::vector<std::string> frame;
    for (const auto& call : session.calls()) {
        if (call.find("Transfer") != std::string::npos || call.rfind("gpsStateChange", 0) == 0 ||
            call.rfind("error", 0) == 0)
            frame.push_back(call);
    }
    return frame;
}

/// A receiver that sends good sentences forever keeps a data phase running until it is unplugged.
std::optional<std::size_t> unpluggingFor(FaultKind kind)
{
    return kind == FaultKind::kFlood ? std::optional<std::size_t>{50} : std::nullopt;
}

class FaultMatrix : public testing::TestWithParam<simulator::Named<Step>> {};

TEST_P(FaultMatrix, EverySessionEndsAndReportsToTheHost)
{
    const auto whole =
        ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3", "startTransfer 1",
                    "endTransfer 1", "startTransfer 2", "endTransfer 2", "gpsStateChange 0");
    for (const auto& kind : simulator::kFaultKinds) {
        if (!applies(kind.value, GetParam().value))
            continue;
        const Fault fault{GetParam().value, kind.value};
        SCOPED_TRACE(describe(fault));
        const SimulatedSession session{{.sentences = support::someSentences(), .faults = {fault}},
                                       SimulatedSession::kEverything,
                                       unpluggingFor(fault.kind)};
        const auto frame = frameOf(session);
        const bool isInterrupted = std::count(frame.begin(), frame.end(), kInterrupted) == 1;
        if (isInterrupted) {
            EXPECT_TRUE(fault.kind == FaultKind::kHangUp || fault.kind == FaultKind::kFlood);
            EXPECT_EQ(frame.front(), "gpsStateChange 1");
            EXPECT_EQ(*(frame.end() - 2), kInterrupted);
            EXPECT_EQ(frame.back(), "gpsStateChange 0");
        } else {
            EXPECT_NE(fault.kind, FaultKind::kHangUp);
            EXPECT_THAT(frame, whole);
        }
        EXPECT_TRUE(session.isClosed());
    }
}

INSTANTIATE_TEST_SUITE_P(At, FaultMatrix, testing::ValuesIn(simulator::kSteps),
                         support::stepTestName);

TEST(FaultsTogether, WrongAcknowledgementsEverywhereDoNotStopTheSession)
{
    simulator::Settings settings{.sentences = support::someSentences()};
    for (const auto& step : simulator::kSteps) {
        if (applies(FaultKind::kWrongAck, step.value))
            settings.faults.push_back({step.value, FaultKind::kWrongAck});
    }
    const SimulatedSession session{std::move(settings)};
    EXPECT_THAT(frameOf(session),
                ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                            "startTransfer 1", "endTransfer 1", "startTransfer 2", "endTransfer 2",
                            "gpsStateChange 0"));
    EXPECT_TRUE(session.isClosed());
}

/// How many records of each sort a session reported.
struct Count {
    std::ptrdiff_t waypoints = 0;
    std::ptrdiff_t trackPoints = 0;
    std::ptrdiff_t routes = 0;

    friend bool operator==(const Count&, const Count&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Count& count)
    {
        return out << count.waypoints << " waypoints, " << count.trackPoints << " track points, "
                   << count.routes << " routes";
    }
};

Count recordsOf(const SimulatedSession& session)
{
    const auto names = session.callNames();
    const auto firstRoute = std::find(names.begin(), names.end(), "newRoute");
    return {std::count(names.begin(), firstRoute, "wayPoint"),
            std::count(names.begin(), names.end(), "trackPoint"),
            std::count(names.begin(), names.end(), "newRoute")};
}

struct Loss {
    const char* fault;
    Count left;
    bool paced = true;
};

/// How many records arrive despite the fault. The receiver repeats a sentence that is not
/// acknowledged.
const Loss kLosses[] = {
    {"version:delay:300", {3, 3, 2}},
    {"ton:lost-ack:1", {3, 3, 2}},
    {"ton:wrong-ack:4", {3, 3, 2}},
    {"waypoint:silence", {0, 3, 2}},
    {"waypoint-data:garble", {3, 3, 2}},
    {"waypoint-data:truncate:2", {3, 3, 2}},
    {"waypoint-data:noise", {3, 3, 2}},
    {"waypoint-data:nul", {3, 3, 2}},
    {"waypoint-data:long", {0, 3, 2}},
    /* longer than five time-outs */ {"waypoint-data:long", {3, 3, 2}, false},
    {"waypoint-data:stop:2", {2, 3, 2}},
    {"waypoint-data:garble:0", {0, 3, 2}},
    {"track-data:stop:1", {3, 1, 2}},
    {"track-data:silence", {3, 0, 2}},
    {"track:silence", {3, 0, 2}},
    {"route-data:stop:2", {3, 3, 1}},
    {"route-data:stop:1", {3, 3, 0}},
    {"route:silence", {3, 3, 0}},
    {"waypoint-data:endless", {0, 0, 0}},
    {"toff:silence", {3, 3, 2}},
    {"baud-back:lost-ack", {3, 3, 2}},
};

TEST(FaultLosses, AreLimitedToWhatTheFaultCauses)
{
    for (const auto& loss : kLosses) {
        SCOPED_TRACE(loss.fault);
        const SimulatedSession session{{.paced = loss.paced,
                                        .sentences = support::someSentences(),
                                        .faults = {simulator::parseFault(loss.fault).value()}}};
        EXPECT_EQ(recordsOf(session), loss.left);
    }
}

} // namespace
} // namespace magellan
