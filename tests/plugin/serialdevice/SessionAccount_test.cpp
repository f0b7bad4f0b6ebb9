// SPDX-License-Identifier: MIT
// What the serial driver's account says: of clean sessions, of every fault at every step, and of
// sessions that the host stops.

#include "SessionTexts.h"
#include "SimulatedSession.h"

#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <plugin/serialdevice/DownloadSession.h>
#include <support/ActingReceiver.h>
#include <support/MemoryLine.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using gps::LineVoice;
using gps::PhaseEnd;
using gps::SkipReason;
using simulator::Fault;
using simulator::FaultKind;
using simulator::Step;
using support::DriverOnALine;
using support::kCamp;
using support::kEnd;
using support::kHut;
using support::kInterrupted;
using support::SimulatedSession;
using support::someSentences;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const char* nameOf(PhaseEnd end)
{
    constexpr const char* kNames[] = {"not reached", "END",     "silence",
                                      "damage",      "stopped", "failed"};
    return kNames[static_cast<std::size_t>(end)];
}

/// "waypoints: END 3/3" and so on: how a phase ended, accepted and seen sentences, what is wrong.
std::string textOf(const gps::PhaseAccount& phase)
{
    constexpr const char* kReasons[gps::kSkipReasonCount] = {
        "not a sentence", "checksum", "other kind",    "too few fields", "no name",
        "replaced",       "repeated", "unknown point", "incomplete"};
    std::string text = phase.kind + ": " + nameOf(phase.end) + " " +
                       std::to_string(phase.lines.accepted) + "/" +
                       std::to_string(phase.lines.seen);
    for (const auto& [number, reason] : phase.lines.details)
        text += ", " + std::to_string(number) + " " + kReasons[static_cast<std::size_t>(reason)];
    return text;
}

std::vector<std::string> phasesOf(const gps::TransferAccount& account)
{
    std::vector<std::string> texts;
    for (const auto& phase : account.phases)
        texts.push_back(textOf(phase));
    return texts;
}

/// "PMGNCMD,TON 1 yes": the command, its attempts, whether it was acknowledged.
std::vector<std::string> commandsOf(const gps::TransferAccount& account)
{
    std::vector<std::string> texts;
    for (const auto& command : account.commands)
        texts.push_back(command.command + " " + std::to_string(command.attempts) +
                        (command.acknowledged ? " yes" : " no"));
    return texts;
}

std::vector<std::string> commandsFor(const gps::TransferAccount& account,
                                     gps::CommandPurpose purpose)
{
    std::vector<std::string> texts;
    for (const auto& command : account.commands) {
        if (command.purpose == purpose)
            texts.push_back(command.command);
    }
    return texts;
}

bool isClean(const gps::TransferAccount& account)
{
    return std::all_of(account.commands.begin(), account.commands.end(),
                       [](const auto& command) { return command.acknowledged; }) &&
           std::all_of(account.phases.begin(), account.phases.end(), [](const auto& phase) {
               return phase.end == PhaseEnd::kEnd && phase.lines.accepted == phase.lines.seen &&
                      phase.lines.details.empty();
           });
}

TEST(SessionAccount, OfACleanSessionIsAllEndAndAcknowledged)
{
    const SimulatedSession session{{.sentences = someSentences()}};
    EXPECT_THAT(phasesOf(session.account()),
                ElementsAre("waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"));
    EXPECT_THAT(commandsOf(session.account()),
                ElementsAre("PMGNCMD,VERSION 1 yes", "PMGNCMD,TON 1 yes",
                            "PMGNCMD,BAUD,115200 1 yes", "PMGNCMD,WAYPOINT 1 yes",
                            "PMGNCMD,TRACK,2 1 yes", "PMGNCMD,ROUTE 1 yes", "PMGNCMD,TOFF 1 yes",
                            "PMGNCMD,HANDOFF 1 yes", "PMGNCMD,BAUD,4800 1 yes"));
    EXPECT_EQ(session.voice(), LineVoice::kReceiver);
    EXPECT_FALSE(session.account().stopped);
    EXPECT_EQ(session.account().omitted, 0U);
    EXPECT_THAT(session.account().files, IsEmpty());
    EXPECT_THAT(session.account().unseen, IsEmpty());
}

TEST(SessionAccount, SaysWhatEachCommandIsFor)
{
    using enum gps::CommandPurpose;
    const auto account = SimulatedSession{{.sentences = someSentences()}}.account();
    EXPECT_THAT(commandsFor(account, kSpeedUp), ElementsAre("PMGNCMD,BAUD,115200"));
    EXPECT_THAT(commandsFor(account, kRestore),
                ElementsAre("PMGNCMD,TOFF", "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"));
    EXPECT_THAT(commandsFor(account, kTransfer), SizeIs(account.commands.size() - 4));
}

TEST(SessionAccount, OfACleanSessionWithHandshakingOnIsTheSame)
{
    const SimulatedSession session{{.handshake = true, .sentences = someSentences()}};
    EXPECT_TRUE(isClean(session.account()));
}

TEST(SessionAccount, OfAReceiverWithoutDataIsCleanAndEmpty)
{
    const SimulatedSession session{{}};
    EXPECT_TRUE(isClean(session.account()));
    EXPECT_THAT(phasesOf(session.account()),
                ElementsAre("waypoints: END 0/0", "tracks: END 0/0", "routes: END 0/0"));
}

TEST(SessionAccount, HasThePhasesThatTheSessionNeeds)
{
    const auto phases = [](const gps::Dictionary& options) {
        return phasesOf(SimulatedSession{{}, options}.account());
    };
    EXPECT_THAT(phases({}), IsEmpty());
    EXPECT_THAT(phases({{"waypoints", true}}), ElementsAre("waypoints: END 0/0"));
    EXPECT_THAT(phases({{"tracks", true}}), ElementsAre("tracks: END 0/0"));
    EXPECT_THAT(phases({{"routes", true}}), ElementsAre("waypoints: END 0/0", "routes: END 0/0"));
}

TEST(SessionAccount, CountsTheAttemptsAtEverySpeed)
{
    const SimulatedSession session{{.speed = 57600}, {}};
    EXPECT_THAT(commandsOf(session.account()), Contains("PMGNCMD,VERSION 26 yes"));
}

TEST(SessionAccount, OfASilentLineHasNoAcknowledgementAndOnlySilentPhases)
{
    support::MemoryLineLog log;
    DriverOnALine driver{[&log] { return std::make_unique<support::MemoryLine>(log); }};
    driver.download(std::make_shared<support::RecordingReceiver>(), SimulatedSession::kEverything);
    EXPECT_THAT(commandsOf(driver.transferAccount()),
                ElementsAre("PMGNCMD,VERSION 30 no", "PMGNCMD,TON 5 no", "PMGNCMD,BAUD,115200 5 no",
                            "PMGNCMD,WAYPOINT 5 no", "PMGNCMD,TRACK,2 5 no", "PMGNCMD,ROUTE 5 no",
                            "PMGNCMD,TOFF 5 no", "PMGNCMD,HANDOFF 5 no", "PMGNCMD,BAUD,0 5 no"));
    EXPECT_THAT(
        phasesOf(driver.transferAccount()),
        ElementsAre("waypoints: silence 0/0", "tracks: silence 0/0", "routes: silence 0/0"));
    EXPECT_EQ(driver.lineVoice(), LineVoice::kNothing);
}

/// What a session on a line in memory has to say about one phase of waypoints.
struct PhaseOnALine {
    /// @param prepare  what the receiver sends after it has acknowledged the command
    template <typename Prepare> explicit PhaseOnALine(Prepare prepare)
    {
        support::MemoryLineLog log;
        support::MemoryLine line{log};
        line.saysSentence("PMGNVER,017");
        line.saysSentence("PMGNCSM,27"); // TON
        line.keepsSilent();
        line.saysSentence(acknowledgementOf("PMGNCMD,BAUD,115200"));
        line.keepsSilent();
        line.saysSentence(acknowledgementOf("PMGNCMD,WAYPOINT"));
        prepare(line);
        const gps::Dictionary work{{"location", "/dev/x"}, {"waypoints", true}};
        support::RecordingReceiver status;
        OperationMonitor monitor;
        {
            OperationAccount account{monitor};
            try {
                (void)DownloadSession{line, status, work, monitor, account}.run();
            } catch (const std::exception&) {
                threw = true;
            }
        }
        text = textOf(monitor.account().phases.at(0));
        voice = monitor.voice();
        const auto calls = status.calls();
        records = static_cast<std::size_t>(std::count_if(
            calls.begin(), calls.end(), [](const auto& call) { return call.starts_with("wayP"); }));
    }

    static std::string acknowledgementOf(const std::string& body)
    {
        return "PMGNCSM," + support::sentence(body).substr(body.size() + 2);
    }

    std::string text;
    LineVoice voice{};
    std::size_t records = 0;
    bool threw = false;
};

TEST(PhaseAccount, NumbersTheSentencesThatWereSkipped)
{
    const PhaseOnALine phase{[](auto& line) {
        line.saysSentence(kCamp);
        line.says(support::breakChecksum(support::sentence(kHut)));
        line.saysSentence(kHut);
        line.says("what is this");
        line.saysSentence("GPGGA,120000");
        line.saysSentence("PMGNCSM,00"); // does not count
        line.saysSentence(kCamp);
        line.saysSentence(kEnd);
    }};
    EXPECT_EQ(phase.text, "waypoints: END 3/6, 2 checksum, 4 not a sentence, 5 other kind");
    EXPECT_EQ(phase.records, 3U);
}

TEST(PhaseAccount, CountsARepeatedSentenceThoughItsRecordIsReported)
{
    const PhaseOnALine phase{[](auto& line) {
        line.saysSentence(kCamp);
        line.saysSentence(kCamp);
        line.saysSentence(kHut);
        line.saysSentence(kCamp); // the one before it is another
        line.saysSentence(kEnd);
    }};
    EXPECT_EQ(phase.text, "waypoints: END 3/4, 2 repeated");
    EXPECT_EQ(phase.records, 4U);
}

TEST(PhaseAccount, ATruncatedSentenceFailsThePhase)
{
    const PhaseOnALine phase{[](auto& line) {
        line.saysSentence(kCamp);
        line.saysSentence("PMGNWPL,4600.0,N");
    }};
    EXPECT_EQ(phase.text, "waypoints: failed 1/2, 2 too few fields");
    EXPECT_TRUE(phase.threw);
}

TEST(PhaseAccount, OfALineThatFailsIsFailed)
{
    const PhaseOnALine phase{[](auto& line) { line.failsAfter(7); }};
    EXPECT_EQ(phase.text, "waypoints: failed 0/0");
    EXPECT_TRUE(phase.threw);
}

TEST(PhaseAccount, OfALineThatFailsBeforeItIsNotReached)
{
    const PhaseOnALine phase{[](auto& line) { line.failsAfter(5); }};
    EXPECT_EQ(phase.text, "waypoints: not reached 0/0");
}

TEST(PhaseAccount, ThreeSilentReadsOfFiveAreSilence)
{
    const PhaseOnALine phase{[](auto& line) {
        line.saysNoise();
        line.says("what is this");
        line.keepsSilent(3);
    }};
    EXPECT_EQ(phase.text, "waypoints: silence 0/1, 1 not a sentence");
}

TEST(PhaseAccount, ThreeDamagedReadsOfFiveAreDamage)
{
    const PhaseOnALine phase{[](auto& line) {
        line.keepsSilent(2);
        line.saysNoise();
        line.says(support::breakChecksum(support::sentence(kCamp)));
        line.saysNoise();
    }};
    EXPECT_EQ(phase.text, "waypoints: damage 0/1, 1 checksum");
}

TEST(PhaseAccount, OfRoutesHasUnknownPointsAndIncompleteRoutes)
{
    const SimulatedSession session{
        {.sentences = {.waypoints = {kCamp},
                       .routes = {"PMGNRTE,1,1,c,1,A,CAMP,a,NONE,a", "PMGNRTE,3,1,c,2,B,CAMP,a",
                                  "PMGNRTE,3,3,c,2,B,CAMP,a", "PMGNRTE,2,1,c,3,C,CAMP,a"}}}};
    EXPECT_EQ(textOf(session.account().phases.at(2)),
              "routes: END 4/4, 1 unknown point, 3 incomplete, 4 incomplete");
}

TEST(LineVoice, IsWhatHasAnsweredBest)
{
    const auto voiceAfter = [](auto prepare) {
        support::MemoryLineLog log;
        support::MemoryLine line{log};
        prepare(line);
        OperationMonitor monitor;
        OperationAccount account{monitor};
        CommandLink link{line, monitor, account};
        for (int i = 0; i < 3; ++i)
            (void)link.readLine();
        return monitor.voice();
    };
    EXPECT_EQ(voiceAfter([](auto&) {}), LineVoice::kNothing);
    EXPECT_EQ(voiceAfter([](auto& line) { line.saysNoise(); }), LineVoice::kNoise);
    EXPECT_EQ(voiceAfter([](auto& line) { line.says("$GPGGA*00"); }), LineVoice::kNoise);
    EXPECT_EQ(voiceAfter([](auto& line) {
                  line.saysSentence("PMGNCMD,VERSION"); // an echo
              }),
              LineVoice::kNoise);
    EXPECT_EQ(voiceAfter([](auto& line) {
                  line.saysSentence("GPGGA,120000");
                  line.saysNoise();
              }),
              LineVoice::kNmea);
    EXPECT_EQ(voiceAfter([](auto& line) {
                  line.saysSentence("PMGNVER,017");
                  line.saysSentence("GPGGA,120000");
              }),
              LineVoice::kReceiver);
}

/// Whether all that a session without faults reports is among the calls, in that order.
bool isWhole(const SimulatedSession& session)
{
    static const auto& expected =
        *new auto(SimulatedSession{{.sentences = someSentences()}}.calls());
    auto next = expected.begin();
    for (const auto& call : session.calls()) {
        if (next != expected.end() && call == *next)
            ++next;
    }
    return next == expected.end();
}

/// Whether each phase ended with END, in answer to its command: a receiver may repeat the END of
/// the phase before.
bool allPhasesEnded(const gps::TransferAccount& account)
{
    constexpr std::string_view kDataCommands[] = {"PMGNCMD,WAYPOINT", "PMGNCMD,TRACK,2",
                                                  "PMGNCMD,ROUTE"};
    return std::all_of(account.phases.begin(), account.phases.end(),
                       [](const auto& phase) { return phase.end == PhaseEnd::kEnd; }) &&
           std::all_of(account.commands.begin(), account.commands.end(), [&](const auto& command) {
               return command.acknowledged ||
                      std::find(std::begin(kDataCommands), std::end(kDataCommands),
                                command.command) == std::end(kDataCommands);
           });
}

/// A session against one fault. A flood never ends, so the receiver is unplugged.
SimulatedSession sessionWith(const Fault& fault)
{
    return SimulatedSession{{.sentences = someSentences(), .faults = {fault}},
                            SimulatedSession::kEverything,
                            fault.kind == FaultKind::kFlood ? std::optional<std::size_t>{50}
                                                            : std::nullopt};
}

class SessionFaults : public testing::TestWithParam<simulator::Named<Step>> {};

/// Also with the fault in all sentences, in one of them, or in END: see Fault.
constexpr std::optional<int> kNumbers[] = {std::nullopt, 0, 2, 4};

TEST_P(SessionFaults, LoseNoRecordIfEveryDataCommandWasAcknowledgedAndEnded)
{
    for (const auto& kind : simulator::kFaultKinds) {
        if (!applies(kind.value, GetParam().value))
            continue;
        for (const auto number : kNumbers) {
            const Fault fault{GetParam().value, kind.value, number};
            if (fault.kind == FaultKind::kFlood && number && !isDataStep(fault.step))
                continue; // the first one does not end
            SCOPED_TRACE(describe(fault));
            const auto session = sessionWith(fault);
            const auto& account = session.account();
            SCOPED_TRACE(testing::PrintToString(phasesOf(account)));
            EXPECT_EQ(account.phases.size(), 3U);
            EXPECT_FALSE(account.stopped);
            if (allPhasesEnded(account)) {
                EXPECT_TRUE(isWhole(session));
            }
            const auto calls = session.calls();
            const bool hasFailed = std::any_of(calls.begin(), calls.end(), [](const auto& call) {
                return call.starts_with("error");
            });
            if (hasFailed) {
                EXPECT_FALSE(isClean(account));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(At, SessionFaults, testing::ValuesIn(simulator::kSteps),
                         support::stepTestName);

struct FaultCase {
    const char* fault;
    std::vector<std::string> phases;
    const char* command = nullptr; ///< one of the commands, with its attempts
};

const FaultCase kFaultCases[] = {
    {"version:silence",
     {"waypoints: silence 0/0", "tracks: silence 0/0", "routes: silence 0/0"},
     "PMGNCMD,VERSION 30 no"},
    {"version:garble",
     {"waypoints: silence 0/0", "tracks: silence 0/0", "routes: silence 0/0"},
     "PMGNCMD,VERSION 30 no"},
    {"ton:lost-ack",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"},
     "PMGNCMD,TON 5 no"},
    {"ton:lost-ack:1",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"},
     "PMGNCMD,TON 2 yes"},
    {"ton:lost-ack:4",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"},
     "PMGNCMD,TON 5 yes"},
    {"baud:silence",
     {"waypoints: silence 0/0", "tracks: silence 0/0", "routes: silence 0/0"},
     "PMGNCMD,BAUD,115200 5 no"},
    {"waypoint-data:garble:1",
     {"waypoints: END 3/4, 1 checksum", "tracks: END 3/3", "routes: END 3/3"}},
    {"waypoint-data:garble:0",
     {"waypoints: damage 0/3, 1 checksum, 2 checksum, 3 checksum", "tracks: END 3/3",
      "routes: END 3/3, 1 unknown point, 1 unknown point, 2 unknown point, 3 unknown point, 3 "
      "unknown point"}},
    {"track-data:stop:3", {"waypoints: END 3/3", "tracks: silence 3/3", "routes: END 3/3"}},
    {"track-data:lost-ack:1",
     {"waypoints: END 3/3", "tracks: silence 1/5, 2 repeated, 3 repeated, 4 repeated, 5 repeated",
      "routes: END 3/3"}},
    {"track-data:hang-up:2",
     {"waypoints: END 3/3", "tracks: failed 1/1", "routes: not reached 0/0"}},
    {"track:silence",
     {"waypoints: END 3/3", "tracks: silence 0/0", "routes: END 3/3"},
     "PMGNCMD,TRACK,2 5 no"},
    {"route-data:stop:1",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: silence 1/1, 1 incomplete"}},
    {"toff:silence",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"},
     "PMGNCMD,TOFF 5 no"},
    {"baud-back:silence",
     {"waypoints: END 3/3", "tracks: END 3/3", "routes: END 3/3"},
     "PMGNCMD,BAUD,4800 5 no"},
};

TEST(SessionFaultTable, SaysWhatIsMissing)
{
    for (const auto& row : kFaultCases) {
        SCOPED_TRACE(row.fault);
        const auto session = sessionWith(simulator::parseFault(row.fault).value());
        EXPECT_EQ(phasesOf(session.account()), row.phases);
        if (row.command != nullptr) {
            EXPECT_THAT(commandsOf(session.account()), Contains(row.command));
        }
    }
}

/// Passes everything on to another line, and acts before each read.
class WatchedLine : public gps::OrvSerial {
public:
    WatchedLine(std::unique_ptr<gps::OrvSerial> line, std::function<void()> beforeRead)
        : line_(std::move(line)), beforeRead_(std::move(beforeRead))
    {}
    void setBaudRate(int bitsPerSecond) override { line_->setBaudRate(bitsPerSecond); }
    int openWithDevicePath(const char* path) override { return line_->openWithDevicePath(path); }
    void sendString(std::string_view text, gps::StringEncoding encoding) override
    {
        line_->sendString(text, encoding);
    }
    std::optional<std::string> readStringTo(std::string_view terminator, float seconds) override
    {
        beforeRead_();
        return line_->readStringTo(terminator, seconds);
    }
    [[nodiscard]] std::uint64_t bytesReceived() const noexcept override
    {
        return line_->bytesReceived();
    }
    void close() override { line_->close(); }

private:
    std::unique_ptr<gps::OrvSerial> line_;
    std::function<void()> beforeRead_;
};

/// A session that the host asks to stop before a given read.
struct StoppedSession {
    StoppedSession(const simulator::Settings& settings, int read) : receiver(settings)
    {
        DriverOnALine driver{[&] {
            return std::make_unique<WatchedLine>(std::make_unique<support::SimulatedLine>(receiver),
                                                 [&] {
                                                     if (read-- == 0) {
                                                         driver.requestStop();
                                                         requested = receiver.now;
                                                     }
                                                 });
        }};
        driver.download(status, SimulatedSession::kEverything);
        account = driver.transferAccount();
    }

    [[nodiscard]] double secondsToStop() const
    {
        return std::chrono::duration<double>(receiver.now - *requested).count();
    }

    support::SimulatedReceiver receiver;
    std::shared_ptr<support::RecordingReceiver> status =
        std::make_shared<support::RecordingReceiver>();
    std::optional<simulator::Clock::time_point> requested;
    gps::TransferAccount account;
};

TEST(StoppedSession, RestoresTheReceiverWithinThreeSecondsAtWhicheverReadItIsStopped)
{
    for (int read = 0;; ++read) {
        SCOPED_TRACE(read);
        const StoppedSession session{{.chatter = true, .sentences = someSentences()}, read};
        if (!session.requested)
            break; // the session has fewer reads
        EXPECT_LE(session.secondsToStop(), 3.0);
        EXPECT_EQ(session.receiver.conversation.speed(), 4800);
        EXPECT_EQ(session.status->calls().back(), "gpsStateChange 0");
        const auto log = session.receiver.log.entries();
        const bool wasSwitchedOn = std::any_of(log.begin(), log.end(), [](const auto& entry) {
            return entry.text == "PMGNCMD,HANDON";
        });
        const bool wasSwitchedOff = std::any_of(log.begin(), log.end(), [](const auto& entry) {
            return entry.text == "PMGNCMD,HANDOFF";
        });
        EXPECT_EQ(wasSwitchedOff, wasSwitchedOn);
    }
}

/// A session that the host asks to stop in a call of the status object.
class Stopping : public testing::Test {
protected:
    /// @param call  how the line of that call begins
    void stopIn(const std::string& call)
    {
        DriverOnALine driver{[&] { return std::make_unique<support::SimulatedLine>(receiver); }};
        const auto status =
            std::make_shared<support::ActingReceiver>(call, [&driver] { driver.requestStop(); });
        driver.download(status, SimulatedSession::kEverything);
        calls = status->calls();
        account = driver.transferAccount();
    }

    support::SimulatedReceiver receiver{{.sentences = someSentences()}};
    std::vector<std::string> calls;
    gps::TransferAccount account;
};

TEST_F(Stopping, EndsAsAFailedSessionDoesWithWhatCameSoFar)
{
    stopIn("trackPoint");
    ASSERT_GE(calls.size(), 4U);
    EXPECT_THAT(calls[calls.size() - 3], testing::StartsWith("trackPoint"));
    EXPECT_EQ(calls[calls.size() - 2], kInterrupted);
    EXPECT_EQ(calls.back(), "gpsStateChange 0");
    EXPECT_THAT(phasesOf(account), ElementsAre("waypoints: END 3/3", "tracks: stopped 1/1",
                                               "routes: not reached 0/0"));
    EXPECT_TRUE(account.stopped);
    EXPECT_THAT(commandsOf(account),
                testing::IsSupersetOf(
                    {"PMGNCMD,TOFF 1 yes", "PMGNCMD,HANDOFF 1 yes", "PMGNCMD,BAUD,4800 1 yes"}));
}

TEST_F(Stopping, BetweenTwoPhasesLeavesTheNextOneUnreached)
{
    stopIn("endTransfer 3");
    EXPECT_THAT(phasesOf(account), ElementsAre("waypoints: END 3/3", "tracks: not reached 0/0",
                                               "routes: not reached 0/0"));
    EXPECT_EQ(calls[calls.size() - 2], kInterrupted);
}

TEST_F(Stopping, AfterTheLastPhaseEndsAsAWholeSessionDoes)
{
    stopIn("endTransfer 2");
    EXPECT_TRUE(isClean(account));
    EXPECT_FALSE(account.stopped);
    EXPECT_THAT(calls, Not(Contains(kInterrupted)));
}

TEST(StoppedProbe, SendsNothingMore)
{
    const StoppedSession session{{.speed = 57600}, 7};
    EXPECT_THAT(session.status->calls(),
                ElementsAre("gpsStateChange 1", kInterrupted, "gpsStateChange 0"));
    EXPECT_EQ(session.secondsToStop(), 1.0); // the read that was waiting
    EXPECT_TRUE(session.account.stopped);
}

/// A unit that only sends positions, four in a second.
class NmeaLine : public support::MemoryLine {
public:
    using MemoryLine::MemoryLine;
    std::optional<std::string> readStringTo(std::string_view terminator, float seconds) override
    {
        saysSentence("GPGGA,120000");
        return MemoryLine::readStringTo(terminator, seconds);
    }
};

TEST(StoppedNmeaSession, SendsTheLastCommandsWithoutReading)
{
    support::MemoryLineLog log;
    int reads = 0;
    DriverOnALine driver{[&] {
        return std::make_unique<WatchedLine>(std::make_unique<NmeaLine>(log), [&] {
            if (++reads == 3)
                driver.requestStop();
        });
    }};
    driver.download(std::make_shared<support::RecordingReceiver>(), SimulatedSession::kEverything);
    EXPECT_EQ(driver.lineVoice(), LineVoice::kNmea);
    EXPECT_EQ(reads, 3);
    const auto sent = log.sent();
    ASSERT_GE(sent.size(), 3U);
    EXPECT_THAT(std::vector<std::string>(sent.end() - 3, sent.end()),
                ElementsAre("PMGNCMD,TOFF", "PMGNCMD,HANDOFF", "PMGNCMD,BAUD,4800"));
}

TEST(StopRequest, BeforeAnOperationHasNoEffectOnIt)
{
    support::SimulatedReceiver receiver{{.sentences = someSentences()}};
    const auto driver = std::make_shared<DriverOnALine>(
        [&] { return std::make_unique<support::SimulatedLine>(receiver); });
    driver->requestStop();
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_EQ(driver->gpsRunAcquire(status, SimulatedSession::kEverything), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_TRUE(isClean(driver->transferAccount()));
    EXPECT_FALSE(driver->transferAccount().stopped);
}

TEST(SessionAccount, OfAnOperationThatCannotStartIsEmpty)
{
    support::SimulatedReceiver receiver{{.sentences = someSentences()}};
    const auto driver = std::make_shared<DriverOnALine>(
        [&] { return std::make_unique<support::SimulatedLine>(receiver); });
    driver->download(std::make_shared<support::RecordingReceiver>(), SimulatedSession::kEverything);
    EXPECT_THAT(driver->transferAccount().phases, Not(IsEmpty()));
    driver->setSerialPort(std::nullopt);
    EXPECT_NE(driver->gpsRunAcquire(std::make_shared<support::RecordingReceiver>(), {}),
              std::nullopt);
    EXPECT_THAT(driver->transferAccount().phases, IsEmpty());
    EXPECT_THAT(driver->transferAccount().commands, IsEmpty());
}

} // namespace
} // namespace magellan
