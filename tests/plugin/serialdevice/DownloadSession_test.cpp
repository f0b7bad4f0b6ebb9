// SPDX-License-Identifier: MIT
// The session's order and its reports, on a line in memory where waiting takes no time.

#include "SessionTexts.h"

#include <plugin/codec/RouteSentence.h>
#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <plugin/serialdevice/DownloadSession.h>
#include <support/LogCapture.h>
#include <support/MemoryLine.h>
#include <support/RecordingReceiver.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace magellan {
namespace {

using support::kCamp;
using support::kEnd;
using support::kHut;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Strings = std::vector<std::string>;

std::string acknowledgement(const std::string& body)
{
    return "PMGNCSM," + support::sentence(body).substr(body.size() + 2);
}

class Session : public testing::Test {
protected:
    /// A receiver that acknowledges every command and has this data.
    void receiverHas(const Strings& waypoints, const Strings& tracks = {},
                     const Strings& routes = {})
    {
        receiverHas(waypoints, tracks, routes, line);
    }
    static void receiverHas(const Strings& waypoints, const Strings& tracks, const Strings& routes,
                            support::MemoryLine& line)
    {
        line.answers("PMGNCMD,VERSION", {"PMGNVER,017,4.05,Sport"});
        for (const std::string command : {"PMGNCMD,TON", "PMGNCMD,BAUD,115200", "PMGNCMD,TOFF",
                                          "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"})
            line.answers(command, {acknowledgement(command)});
        phase("PMGNCMD,WAYPOINT", waypoints, line);
        phase("PMGNCMD,TRACK,2", tracks, line);
        phase("PMGNCMD,ROUTE", routes, line);
    }

    /// What the receiver says to one data command.
    static void phase(const std::string& command, Strings sentences, support::MemoryLine& line)
    {
        sentences.insert(sentences.begin(), acknowledgement(command));
        sentences.emplace_back(kEnd);
        line.answers(command, sentences);
    }

    void run(const gps::Dictionary& options, const std::string& location = "/dev/ttyUSB0")
    {
        work = options;
        work.set("location", location);
        OperationAccount keeper{monitor};
        DownloadSession session{line, status, work, monitor, keeper};
        error = session.run();
    }

    /// Everything sent but the acknowledgements of data.
    [[nodiscard]] Strings commands() const
    {
        auto bodies = done.sent();
        bodies.erase(std::remove_if(bodies.begin(), bodies.end(),
                                    [](const auto& body) { return body.starts_with("PMGNCSM"); }),
                     bodies.end());
        return bodies;
    }

    support::MemoryLineLog done;
    support::MemoryLine line{done};
    support::RecordingReceiver status;
    support::LogCapture logged;
    gps::Dictionary work;
    OperationMonitor monitor; // has the account once run() has returned or thrown
    std::optional<gps::Error> error;
};

TEST_F(Session, OpensAtTheFirstSpeedAndSendsEachCommandInOrder)
{
    receiverHas({});
    run({{"waypoints", true}, {"tracks", true}, {"routes", true}});
    EXPECT_EQ(error, std::nullopt);
    EXPECT_THAT(commands(), ElementsAre("PMGNCMD,VERSION", "PMGNCMD,HANDON", "PMGNCMD,TON",
                                        "PMGNCMD,BAUD,115200", "PMGNCMD,WAYPOINT",
                                        "PMGNCMD,TRACK,2", "PMGNCMD,ROUTE", "PMGNCMD,TOFF",
                                        "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"));
    EXPECT_THAT(status.calls(), ElementsAre("startTransfer 3", "endTransfer 3", "startTransfer 1",
                                            "endTransfer 1", "startTransfer 2", "endTransfer 2"));
    EXPECT_THAT(Strings(done.calls.begin(), done.calls.begin() + 3),
                ElementsAre("speed 4800", "open /dev/ttyUSB0", "speed 4800"));
    EXPECT_TRUE(line.askedAsExpected());
}

TEST_F(Session, ChangesTheSpeedAfterTheReceiverHasAcknowledgedAndReadsOneLineThen)
{
    receiverHas({});
    run({});
    const auto framed = [](const std::string& body) {
        return "send " + support::sentence(body) + "\r\n";
    };
    EXPECT_THAT(done.calls,
                ElementsAre("speed 4800", "open /dev/ttyUSB0", "speed 4800",
                            framed("PMGNCMD,VERSION"), "read", framed("PMGNCMD,HANDON"),
                            framed("PMGNCMD,TON"), "read", "read", framed("PMGNCMD,BAUD,115200"),
                            "read", "speed 115200", "read", framed("PMGNCMD,TOFF"), "read", "read",
                            framed("PMGNCMD,HANDOFF"), "read", "read", framed("PMGNCMD,BAUD,4800"),
                            "read", "speed 4800", "read"));
}

TEST_F(Session, WithoutOptionsHasNoTransfers)
{
    receiverHas({kCamp});
    run({{"waypoints", false}, {"tracks", 0}});
    EXPECT_THAT(status.calls(), IsEmpty());
    EXPECT_THAT(commands(), ElementsAre("PMGNCMD,VERSION", "PMGNCMD,HANDON", "PMGNCMD,TON",
                                        "PMGNCMD,BAUD,115200", "PMGNCMD,TOFF", "PMGNCMD,HANDOFF",
                                        "PMGNCMD,BAUD,4800"));
}

TEST_F(Session, RemembersTheModelAndFirmwareOfTheReceiverOnThatPort)
{
    receiverHas({});
    run({});
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").model, "Sport");
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").firmware, "4.05");
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB1").model, std::nullopt);
}

TEST_F(Session, RemembersTheReceiverOfEachPort)
{
    receiverHas({});
    run({});
    run({}, "/dev/ttyUSB1");
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").model, "Sport");
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB1").model, "Sport");
}

TEST_F(Session, RemembersAReceiverThatAcknowledgesTheQuestionFirst)
{
    receiverHas({});
    line.answers("PMGNCMD,VERSION", {"PMGNCSM,28", "PMGNVER,017,4.05,Sport"});
    run({});
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").model, "Sport");
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").firmware, "4.05");
}

TEST_F(Session, ForgetsTheReceiverOfAPortWhereNothingAnswersAnyMore)
{
    monitor.describe("/dev/ttyUSB0", {"Sport", "4.05"});
    run({});
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").model, std::nullopt);
    EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").firmware, std::nullopt);
}

TEST_F(Session, VersionWithoutModelAndFirmwareOrAnotherAnswerDescribesNothing)
{
    for (const std::string answer :
         {"PMGNVER,017,,", "PMGNVER,017, ,  ", "PMGNVER,017", "PMGNVER", "PMGNCSM,28"}) {
        support::MemoryLine other{done};
        receiverHas({}, {}, {}, other);
        other.answers("PMGNCMD,VERSION", {answer});
        OperationAccount keeper{monitor};
        work = {{"location", "/dev/ttyUSB0"}};
        error = DownloadSession{other, status, work, monitor, keeper}.run();
        EXPECT_EQ(error, std::nullopt) << answer;
        EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").model, std::nullopt) << answer;
        EXPECT_EQ(monitor.descriptionOf("/dev/ttyUSB0").firmware, std::nullopt) << answer;
    }
}

TEST_F(Session, ReadsAndDropsALineIfHandshakingIsAlreadyOn)
{
    receiverHas({});
    line.answers("PMGNCMD,VERSION", {"PMGNCSM,28", "PMGNVER,017,4.05,Sport"});
    run({});
    EXPECT_THAT(commands(), Not(Contains("PMGNCMD,HANDON")));
    EXPECT_THAT(commands(), ElementsAre("PMGNCMD,VERSION", "PMGNCMD,TON", "PMGNCMD,BAUD,115200",
                                        "PMGNCMD,TOFF", "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"));
    EXPECT_THAT(logged.lines(), Not(Contains(HasSubstr("PMGNVER"))));
}

TEST_F(Session, LogsTheLinesThatTheReceiverSendsAfterItsSwitches)
{
    receiverHas({});
    line.answers("PMGNCMD,TON", {"PMGNCSM,27", "A"});
    line.answers("PMGNCMD,BAUD,115200", {acknowledgement("PMGNCMD,BAUD,115200"), "B"});
    line.answers("PMGNCMD,TOFF", {acknowledgement("PMGNCMD,TOFF"), "C"});
    line.answers("PMGNCMD,HANDOFF", {"PMGNCSM,3E", "D"});
    line.answers("PMGNCMD,BAUD,4800", {acknowledgement("PMGNCMD,BAUD,4800"), "E"});
    run({});
    Strings responses;
    for (const auto& logLine : logged.lines()) {
        if (logLine.starts_with("Response"))
            responses.push_back(logLine);
    }
    EXPECT_THAT(responses,
                ElementsAre("Response after TON = $A*41", "Response after TON = $B*42",
                            "Response after TOFF = $C*43", "Response after HANDOFF = $D*44",
                            "Response after Setting rate back = $E*45"));
}

TEST_F(Session, TriesEverySpeedFiveTimesInTheTablesOrder)
{
    line.keepsSilent(30);
    run({});
    Strings probe{"speed 4800", "open /dev/ttyUSB0"};
    for (const std::string speed : {"4800", "115200", "1200", "9600", "19200", "57600"}) {
        probe.push_back("speed " + speed);
        for (int attempt = 0; attempt < 5; ++attempt)
            probe.insert(probe.end(), {"send $PMGNCMD,VERSION*28\r\n", "read"});
    }
    ASSERT_GT(done.calls.size(), probe.size());
    EXPECT_THAT(
        Strings(done.calls.begin(), done.calls.begin() + static_cast<std::ptrdiff_t>(probe.size())),
        ElementsAreArray(probe));
}

TEST_F(Session, RunsToTheEndAgainstSilenceAndSetsTheSpeedToZero)
{
    run({{"waypoints", true}, {"tracks", true}, {"routes", true}});
    EXPECT_EQ(error, std::nullopt);
    Strings expected(30, "PMGNCMD,VERSION");
    expected.emplace_back("PMGNCMD,HANDON");
    for (const auto* command :
         {"PMGNCMD,TON", "PMGNCMD,BAUD,115200", "PMGNCMD,WAYPOINT", "PMGNCMD,TRACK,2",
          "PMGNCMD,ROUTE", "PMGNCMD,TOFF", "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,0"})
        expected.insert(expected.end(), 5, command);
    EXPECT_EQ(done.sent(), expected);
    EXPECT_THAT(status.calls(), ElementsAre("startTransfer 3", "endTransfer 3", "startTransfer 1",
                                            "endTransfer 1", "startTransfer 2", "endTransfer 2"));
    EXPECT_EQ(*(done.calls.end() - 2), "speed 0");
    EXPECT_THAT(
        logged.lines(),
        AllOf(SizeIs(5), Each(std::string{"(null)"}))); // the route phase's five silent reads
}

TEST_F(Session, FindsAReceiverAtTheSixthSpeedAndRestoresIt)
{
    line.keepsSilent(25);
    line.saysSentence("PMGNVER,017");
    run({});
    EXPECT_THAT(done.sent(), Contains("PMGNCMD,VERSION").Times(26));
    EXPECT_EQ(done.sent().back(), "PMGNCMD,BAUD,57600");
    EXPECT_EQ(*(done.calls.end() - 2), "speed 57600");
}

TEST_F(Session, FindsAReceiverThatAnswersOnlyTheLastAttempt)
{
    line.keepsSilent(29);
    line.saysSentence("PMGNVER,017");
    run({});
    EXPECT_THAT(done.sent(), Contains("PMGNCMD,VERSION").Times(30));
    EXPECT_EQ(done.sent().back(), "PMGNCMD,BAUD,57600");
}

TEST_F(Session, ContinuesTheSearchAfterAnAnswerWithABadChecksum)
{
    line.says(support::breakChecksum(support::sentence("PMGNVER,017")));
    line.keepsSilent(4);
    line.saysSentence("PMGNVER,017");
    run({});
    EXPECT_EQ(done.sent().back(), "PMGNCMD,BAUD,115200");
}

TEST_F(Session, SwitchesHandshakingOnUnlessItsOwnQuestionIsAcknowledged)
{
    for (const std::string reply : {"PMGNCSM,27", "PMGNCSM,28,", "PMGNCSM", "PMGNCMD,VERSION"}) {
        receiverHas({});
        line.answers("PMGNCMD,VERSION", {reply});
        done.calls.clear();
        run({});
        auto sent = commands();
        sent.resize(3);
        EXPECT_THAT(sent, ElementsAre("PMGNCMD,VERSION", "PMGNCMD,HANDON", "PMGNCMD,TON")) << reply;
    }
}

TEST_F(Session, UsesTheLastAttemptAtASpeedBeforeTheNextSpeed)
{
    line.keepsSilent(4);
    line.saysSentence("ANYTHING");
    run({});
    EXPECT_THAT(done.sent(), Contains("PMGNCMD,VERSION").Times(5));
    EXPECT_THAT(done.sent(), Contains("PMGNCMD,BAUD,4800"));
}

TEST_F(Session, SetsTheDataSpeedEvenIfTheReceiverAlreadyHasIt)
{
    line.keepsSilent(5);
    line.saysSentence("PMGNVER,017");
    run({});
    EXPECT_THAT(done.sent(), Contains("PMGNCMD,BAUD,115200").Times(10)); // up, and back
}

TEST_F(Session, ReportsWaypointsAsTheyArrive)
{
    receiverHas({kCamp, kHut, kCamp});
    run({{"waypoints", true}});
    const auto calls = status.calls();
    ASSERT_THAT(calls, SizeIs(5));
    EXPECT_THAT(calls[1],
                AllOf(StartsWith("wayPoint"), HasSubstr("CAMP"), HasSubstr("by the lake")));
    EXPECT_THAT(calls[2],
                AllOf(StartsWith("wayPoint"), HasSubstr("HUT"), Not(HasSubstr("by the lake"))));
    EXPECT_THAT(calls[3], HasSubstr("CAMP"));
    EXPECT_EQ(calls.back(), "endTransfer 3");
}

TEST_F(Session, AcknowledgesEachSentenceAndTheEnd)
{
    receiverHas({kCamp});
    run({{"waypoints", true}});
    const auto sent = done.sent();
    const auto asked = std::find(sent.begin(), sent.end(), "PMGNCMD,WAYPOINT");
    EXPECT_THAT(Strings(asked, asked + 4), ElementsAre("PMGNCMD,WAYPOINT", acknowledgement(kCamp),
                                                       "PMGNCSM,3D", "PMGNCMD,TOFF"));
}

TEST_F(Session, FetchesWaypointsForRoutesWithoutReportingThem)
{
    receiverHas({kCamp, kHut}, {}, {"PMGNRTE,1,1,c,01,LOOP,CAMP,a,HUT,a"});
    run({{"routes", true}});
    EXPECT_THAT(commands(), AllOf(Contains("PMGNCMD,WAYPOINT"), Contains("PMGNCMD,ROUTE"),
                                  Not(Contains("PMGNCMD,TRACK,2"))));
    const auto calls = status.calls();
    ASSERT_THAT(calls, SizeIs(5));
    EXPECT_EQ(calls[0], "startTransfer 2");
    EXPECT_THAT(calls[1], AllOf(StartsWith("newRoute"), HasSubstr("LOOP")));
    EXPECT_THAT(calls[2],
                AllOf(StartsWith("wayPoint"), HasSubstr("CAMP"), HasSubstr("by the lake")));
    EXPECT_THAT(calls[3], AllOf(StartsWith("wayPoint"), HasSubstr("HUT")));
    EXPECT_EQ(calls[4], "endTransfer 2");
}

TEST_F(Session, ReportsARouteOfSeveralSentencesOnceAfterItsLast)
{
    receiverHas({kCamp, kHut}, {},
                {"PMGNRTE,3,1,c,01,LOOP,CAMP,a,HUT,a", "PMGNRTE,3,2,c,01,LOOP,HUT,a",
                 "PMGNRTE,3,3,c,01,LOOP,CAMP,a", "PMGNRTE,1,1,c,02,BACK,HUT,a"});
    run({{"routes", true}});
    Strings names;
    for (const auto& call : status.calls()) {
        for (const auto* name : {"LOOP", "BACK", "CAMP", "HUT"}) {
            if (call.find(name) != std::string::npos)
                names.emplace_back(name);
        }
    }
    EXPECT_THAT(names, ElementsAre("LOOP", "CAMP", "HUT", "HUT", "CAMP", "BACK", "HUT"));
}

TEST_F(Session, ARoutePointIsTheRecordOfItsWaypointWithThePoint)
{
    receiverHas({kCamp}, {}, {"PMGNRTE,1,1,c,01,LOOP,CAMP,a"});
    run({{"waypoints", true}, {"routes", true}});
    const auto calls = status.calls();
    ASSERT_THAT(calls, SizeIs(7));
    const auto& reported = calls[1]; // "wayPoint POINT {EXTRAS}"
    const auto point = reported.substr(9, reported.find(" {", 9) - 9);
    EXPECT_EQ(calls[5], reported.substr(0, reported.size() - 1) + ", point = " + point + '}');
}

TEST_F(Session, ARouteKeepsNothingOfThePreviousOne)
{
    receiverHas(
        {kCamp}, {},
        {"PMGNRTE,2,1,c,01,LOOP,CAMP,a", "PMGNRTE,2,2,m,01,LOOP,all day", "PMGNRTE,1,1,c,02,BACK"});
    run({{"routes", true}});
    EXPECT_THAT(status.calls(),
                ElementsAre("startTransfer 2", AllOf(StartsWith("newRoute"), HasSubstr("all day")),
                            StartsWith("wayPoint"), "newRoute {name = \"BACK\", lastIndex = 1}",
                            "endTransfer 2"));
}

TEST_F(Session, ARouteUsesTheLastWaypointOfAName)
{
    receiverHas({kCamp, "PMGNWPL,4730.00000,N,00700.00000,E,0000100,M,CAMP,moved,a"}, {},
                {"PMGNRTE,1,1,c,01,LOOP,CAMP,a"});
    run({{"routes", true}});
    EXPECT_THAT(status.calls()[2], HasSubstr("moved"));
}

TEST_F(Session, AWaypointWithoutANameIsReportedButUsedInNoRoute)
{
    receiverHas({"PMGNWPL,4600.00000,N,00700.00000,E,0000100"}, {},
                {"PMGNRTE,1,1,c,01,LOOP,CAMP,a"});
    run({{"waypoints", true}, {"routes", true}});
    EXPECT_THAT(status.calls(),
                ElementsAre("startTransfer 3", StartsWith("wayPoint"), "endTransfer 3",
                            "startTransfer 2", StartsWith("newRoute"), "endTransfer 2"));
}

TEST_F(Session, LogsEachReplyOfTheRoutePhaseAndItsSilence)
{
    receiverHas({}, {}, {"PMGNRTE,1,1,c,01,LOOP"});
    line.answers("PMGNCMD,ROUTE", {acknowledgement("PMGNCMD,ROUTE"), "PMGNRTE,1,1,c,01,LOOP"});
    run({{"routes", true}});
    EXPECT_THAT(logged.lines(), Contains("PMGNRTE,1,1,c,01,LOOP"));
    EXPECT_THAT(logged.lines(), Contains("(null)").Times(5));
}

TEST_F(Session, PointsWithoutANameFormTheCurrentTrackAndANameBeginsATrack)
{
    receiverHas({}, {"PMGNTRK,4600.000,N,00700.000,E,00100,M,120000.00,A,,010624",
                     "PMGNTRK,4600.100,N,00700.000,E,00100,M,120001.00,A",
                     "PMGNTRK,4600.200,N,00700.000,E,00100,M,120002.00,A,A,010624",
                     "PMGNTRK,4600.300,N,00700.000,E,00100,M,120003.00,A,A,010624",
                     "PMGNTRK,4600.400,N,00700.000,E,00100,M,120004.00,A"});
    run({{"tracks", true}});
    Strings kinds;
    for (const auto& call : status.calls())
        kinds.push_back(call.substr(0, call.find(' ')) +
                        (call.starts_with("newTrack") ? call.substr(8) : ""));
    EXPECT_THAT(kinds, ElementsAre("startTransfer", "newTrack {name = \"Current Track\"}",
                                   "trackPoint", "trackPoint", "newTrack {name = \"A\"}",
                                   "trackPoint", "trackPoint", "trackPoint", "endTransfer"));
}

TEST_F(Session, ATrackPointWithoutADateTakesItsDayFromThePreviousOne)
{
    receiverHas({}, {"PMGNTRK,4600.000,N,00700.000,E,00100,M,120000.00,A,,010624",
                     "PMGNTRK,4600.100,N,00700.000,E,00100,M,120001.00,A"});
    run({{"tracks", true}});
    EXPECT_THAT(status.calls(),
                AllOf(Contains(HasSubstr("1717243200")), Contains(HasSubstr("1717243201"))));
}

TEST_F(Session, AFirstTrackPointWithoutADateHasADayOfZero)
{
    receiverHas({kCamp}, {"PMGNTRK,4600.100,N,00700.000,E,00100,M,000001.00,A"});
    run({{"waypoints", true}, {"tracks", true}});
    EXPECT_THAT(status.calls(), Contains(AllOf(StartsWith("trackPoint"),
                                               HasSubstr(", 1, 0) {}")))); // time and reserved
}

TEST_F(Session, EndsAPhaseAfterFiveEmptyReadsInTotalEvenWithGoodOnesBetween)
{
    receiverHas({});
    line.answers("PMGNCMD,WAYPOINT", {});
    // Acknowledged, then silence and waypoints in turn: the fifth silence ends the phase.
    line.saysSentence("PMGNVER,017");
    line.saysSentence("PMGNCSM,27");
    line.keepsSilent();
    line.saysSentence(acknowledgement("PMGNCMD,BAUD,115200"));
    line.keepsSilent();
    line.saysSentence(acknowledgement("PMGNCMD,WAYPOINT"));
    for (int i = 0; i < 4; ++i) {
        line.keepsSilent();
        line.saysSentence(kCamp);
    }
    line.keepsSilent();
    line.saysSentence(kHut); // arrives after the end of the phase
    for (const std::string command : {"PMGNCMD,VERSION", "PMGNCMD,TON", "PMGNCMD,BAUD,115200"})
        line.answers(command, {});
    run({{"waypoints", true}});
    const auto calls = status.calls();
    EXPECT_THAT(calls, SizeIs(6));
    EXPECT_THAT(calls, Not(Contains(HasSubstr("HUT"))));
}

TEST_F(Session, AnInvalidSentenceCountsAsAnEmptyRead)
{
    line.saysSentence("PMGNVER,017");
    line.saysSentence("PMGNCSM,27");
    line.keepsSilent();
    line.saysSentence(acknowledgement("PMGNCMD,BAUD,115200"));
    line.keepsSilent();
    line.saysSentence(acknowledgement("PMGNCMD,WAYPOINT"));
    for (int i = 0; i < 4; ++i)
        line.says(support::breakChecksum(support::sentence(kCamp)));
    line.saysSentence(kHut);
    line.says("no sentence at all");
    line.saysSentence(kHut);
    run({{"waypoints", true}});
    EXPECT_THAT(status.calls(), SizeIs(3)); // the hut once, between its brackets
}

TEST_F(Session, ASentenceThatDoesNotDecodeIsSkippedAndNotCounted)
{
    Strings sentences(20, "PMGNXYZ,1,2,3");
    sentences.emplace_back(kCamp);
    receiverHas(sentences);
    run({{"waypoints", true}});
    EXPECT_THAT(status.calls(), SizeIs(3));
}

TEST_F(Session, ATooShortSentenceThrowsARangeError)
{
    receiverHas({"PMGNWPL,4600.0,N"});
    EXPECT_THROW(run({{"waypoints", true}}), gps::RangeError);
    EXPECT_THAT(status.calls(), ElementsAre("startTransfer 3")); // and no more
}

TEST_F(Session, ALineThatFailsAtAnyReadEndsTheSessionAtThatRead)
{
    // What was reported before the read that fails: each transfer begins after its command is
    // acknowledged, and ends after END.
    const Strings reported[] = {
        /* VERSION, TON and its line, BAUD and its line, WAYPOINT */ {},
        {},
        {},
        {},
        {},
        {},
        /* END */ {"startTransfer 3"},
        /* TRACK */ {"startTransfer 3", "endTransfer 3"},
        /* END */ {"startTransfer 3", "endTransfer 3", "startTransfer 1"},
        /* ROUTE */ {"startTransfer 3", "endTransfer 3", "startTransfer 1", "endTransfer 1"},
        /* END */
        {"startTransfer 3", "endTransfer 3", "startTransfer 1", "endTransfer 1", "startTransfer 2"},
        /* TOFF */
        {"startTransfer 3", "endTransfer 3", "startTransfer 1", "endTransfer 1", "startTransfer 2",
         "endTransfer 2"},
    };
    for (std::size_t reads = 0; reads < std::size(reported); ++reads) {
        SCOPED_TRACE(reads);
        support::MemoryLineLog did;
        support::MemoryLine failing{did};
        support::RecordingReceiver recorded;
        failing.failsAfter(static_cast<int>(reads));
        receiverHas({}, {}, {}, failing);
        const gps::Dictionary wanted{
            {"location", "/dev/x"}, {"waypoints", true}, {"tracks", true}, {"routes", true}};
        OperationAccount keeper{monitor};
        DownloadSession session{failing, recorded, wanted, monitor, keeper};
        EXPECT_THROW((void)session.run(), gps::SerialFailure);
        EXPECT_EQ(recorded.calls(), reported[reads]);
        EXPECT_EQ(did.calls.back(), "read"); // nothing was sent after the failure
    }
}

TEST_F(Session, MoreWaypointsThanAnyReceiverHoldsAreRejected)
{
    Strings waypoints;
    for (std::size_t i = 0; i < DownloadSession::kMostWaypoints; ++i)
        waypoints.push_back("PMGNWPL,4600.0,N,00700.0,E,0,M," + std::to_string(i) + ",,a");
    waypoints.push_back(waypoints.front()); // a name that is already known
    receiverHas(waypoints);
    EXPECT_NO_THROW(run({{"routes", true}}));
    waypoints.emplace_back(kCamp);
    receiverHas(waypoints);
    done.calls.clear();
    EXPECT_THROW(run({{"routes", true}}), std::length_error);
    // The END of the phase arrives instead of the first acknowledgement.
    EXPECT_THAT(commands(), ElementsAre("PMGNCMD,VERSION", "PMGNCMD,HANDON", "PMGNCMD,TON",
                                        "PMGNCMD,BAUD,115200", "PMGNCMD,WAYPOINT", "PMGNCMD,TOFF",
                                        "PMGNCMD,TOFF", "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"));
    EXPECT_EQ(*(done.calls.end() - 2), "speed 4800");
}

/// Counts route points instead of storing them.
class RecordCounter : public support::RecordingReceiver {
public:
    void wayPoint(const gps::GPSPoint& /*point*/, const gps::Dictionary& /*extra*/) override
    {
        ++count_;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    std::size_t count_ = 0;
};

TEST_F(Session, RoutePointsShareTheRecordsOfTheirWaypoints)
{
    constexpr std::size_t kComment = 4 << 20;
    constexpr std::size_t kMentions = 4096; // copies of the record would take 16 GiB
    std::string route = "PMGNRTE,1,1,c,1,R";
    for (std::size_t i = 0; i < kMentions; ++i)
        route += ",A,a";
    receiverHas({"PMGNWPL,4600.0,N,00700.0,E,0,M,A," + std::string(kComment, 'x') + ",a"}, {},
                {route, route});
    RecordCounter counting;
    work = {{"location", "/dev/x"}, {"routes", true}};
    OperationAccount keeper{monitor};
    EXPECT_EQ((DownloadSession{line, counting, work, monitor, keeper}.run()), std::nullopt);
    EXPECT_EQ(counting.count(), 2 * kMentions);
}

TEST_F(Session, APortThatCannotBeOpenedIsAnErrorAndNothingIsSent)
{
    line.refuses(16);
    run({{"waypoints", true}});
    EXPECT_EQ(
        error,
        (gps::Error{"com.Orvane.GPSPlugin.ErrorDomain",
                    -1,
                    {{gps::kErrorDescriptionKey, "Couldn't open communications port /dev/ttyUSB0"},
                     {gps::kErrorSuggestionKey, "The port might be in use by another program"}}}));
    EXPECT_THAT(done.calls, ElementsAre("speed 4800", "open /dev/ttyUSB0"));
}

TEST_F(Session, OptionsAreReadAsBooleansOfEveryType)
{
    receiverHas({});
    run({{"waypoints", "yes"}, {"tracks", 2}, {"routes", gps::Array{}}});
    EXPECT_THAT(status.calls(), ElementsAre("startTransfer 3", "endTransfer 3", "startTransfer 1",
                                            "endTransfer 1"));
}

} // namespace
} // namespace magellan
