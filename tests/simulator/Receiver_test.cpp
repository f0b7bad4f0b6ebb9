// SPDX-License-Identifier: MIT
// Sessions with a running receiver over its pseudo-terminal.

#include "simulator/Session.h"

#include <tools/simulator/Receiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace {

using simulator::LogKind;
using simulator::Receiver;
using support::acknowledgement;
using support::LineClient;
using support::sentence;
using support::unpaced;
using support::waitFor;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

simulator::Settings withoutHandshake()
{
    auto settings = unpaced();
    settings.handshake = false;
    return settings;
}

TEST(Receiver, AnswersVersionWithItsVersionSentence)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), support::kVersionLine);
}

TEST(Receiver, AcknowledgesVersionFirstWhileHandshakingIsOn)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,28"));
    EXPECT_EQ(client.line(), support::kVersionLine);
}

TEST(Receiver, AcceptsHandOnWithoutAnAcknowledgement)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,HANDON");
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Receiver, AcknowledgesHandOnIfHandshakingIsAlreadyOn)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,HANDON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,70"));
}

TEST(Receiver, AcknowledgesHandOffAndNothingAfterIt)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,HANDOFF");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,3E"));
    client.say("PMGNCMD,TON");
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), support::kVersionLine);
}

TEST(Receiver, CannotReadCommandsAtAnotherSpeed)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B9600};
    client.say("PMGNCMD,HANDON");
    ASSERT_TRUE(waitFor(receiver, LogKind::kUnreadable, "$PMGNCMD,HANDON*70"));
    client.setSpeed(B4800);
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), support::kVersionLine);
    EXPECT_THAT(support::logged(receiver, {LogKind::kSpeed, LogKind::kReceived}),
                ElementsAre("speed 9600", "speed 4800", "received PMGNCMD,VERSION"));
}

TEST(Receiver, CannotBeReadAtAnotherSpeed)
{
    auto settings = unpaced();
    settings.speed = 1200;
    settings.paced = true;
    const Receiver receiver{settings};
    LineClient client{receiver.path(), B1200};
    client.say("PMGNCMD,TON");
    ASSERT_TRUE(waitFor(receiver, LogKind::kReceived));
    client.setSpeed(B9600); // long before the first piece has been sent
    ASSERT_TRUE(waitFor(receiver, LogKind::kSent));
    client.setSpeed(B1200);
    client.say("PMGNCMD,TOFF");
    EXPECT_THAT(client.line(), EndsWith(acknowledgement("PMGNCMD,TOFF")));
}

TEST(Receiver, ChangesItsSpeedAfterTheAcknowledgement)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,BAUD,115200");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD,115200"));
    client.setSpeed(B115200);
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,28"));
    EXPECT_THAT(
        support::logged(receiver, {LogKind::kSpeed, LogKind::kOwnSpeed, LogKind::kReceived}),
        ElementsAre("speed 4800", "received PMGNCMD,BAUD,115200", "own-speed 115200",
                    "speed 115200", "received PMGNCMD,VERSION"));
}

TEST(Receiver, AcknowledgesAChangeOfSpeedWithoutHandshaking)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,BAUD,9600");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD,9600"));
}

TEST(Receiver, KeepsItsSpeedIfTheRequestedOneIsNotALineSpeed)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B4800};
    for (const std::string speed :
         {"0", "", "300", "4801", "230400", "-9600", "9600x", "99999999999"}) {
        client.say("PMGNCMD,BAUD," + speed);
        EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD," + speed));
        client.say("PMGNCMD,VERSION");
        EXPECT_EQ(client.line(), support::kVersionLine) << speed;
    }
    EXPECT_THAT(support::logged(receiver, {LogKind::kOwnSpeed}), IsEmpty());
}

TEST(Receiver, SupportsAllStandardSpeeds)
{
    for (const int speed : {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200})
        EXPECT_TRUE(simulator::isLineSpeed(speed)) << speed;
    for (const int speed : {0, 1199, 1201, 115201, 230400})
        EXPECT_FALSE(simulator::isLineSpeed(speed)) << speed;
}

// Sends a command and acknowledges each sentence up to END. Returns the bodies that arrived.
std::vector<std::string> receivePhase(LineClient& client, const std::string& command)
{
    client.say(command);
    std::vector<std::string> bodies{client.line()};
    while (bodies.back() != support::kEnd && bodies.size() < 10) {
        const auto line = client.line();
        bodies.push_back(line.substr(1, line.size() - 4));
        client.acknowledge(bodies.back());
    }
    return bodies;
}

TEST(Receiver, SendsEachKindsSentencesAndEnd)
{
    for (const bool paced : {false, true}) {
        auto settings = unpaced();
        settings.paced = paced;
        settings.speed = 115200;
        const Receiver receiver{settings};
        LineClient client{receiver.path(), B115200};
        EXPECT_THAT(receivePhase(client, "PMGNCMD,WAYPOINT"),
                    ElementsAre(acknowledgement("PMGNCMD,WAYPOINT"), "PMGNWPL,one", "PMGNWPL,two",
                                "PMGNWPL,three", support::kEnd));
        EXPECT_THAT(receivePhase(client, "PMGNCMD,TRACK,2"),
                    ElementsAre(acknowledgement("PMGNCMD,TRACK,2"), "PMGNTRK,one", "PMGNTRK,two",
                                support::kEnd));
        EXPECT_THAT(receivePhase(client, "PMGNCMD,ROUTE"),
                    ElementsAre(acknowledgement("PMGNCMD,ROUTE"), "PMGNRTE,one", support::kEnd));
    }
}

TEST(Receiver, SendsOnlyEndWithoutData)
{
    auto settings = unpaced();
    settings.sentences = {};
    const Receiver receiver{settings};
    LineClient client{receiver.path(), B4800};
    EXPECT_THAT(receivePhase(client, "PMGNCMD,ROUTE"),
                ElementsAre(acknowledgement("PMGNCMD,ROUTE"), support::kEnd));
}

TEST(Receiver, SendsNothingMoreAfterEndIsAcknowledged)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    receivePhase(client, "PMGNCMD,ROUTE");
    client.acknowledge(support::kEnd); // again
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Receiver, DoesNotWaitWhileHandshakingIsOff)
{
    const Receiver receiver{withoutHandshake()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TRACK,2");
    EXPECT_EQ(client.line(), sentence("PMGNTRK,one"));
    EXPECT_EQ(client.line(), sentence("PMGNTRK,two"));
    EXPECT_EQ(client.line(), sentence(support::kEnd));
}

TEST(Receiver, ContinuesOnlyAfterTheRightAcknowledgement)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TRACK,2");
    client.line();
    client.line();
    client.acknowledge("PMGNTRK,two");
    client.acknowledge("PMGNTRK,one");
    EXPECT_EQ(client.line(), sentence("PMGNTRK,two"));
    const auto wrong = acknowledgement("PMGNTRK,two").substr(1, 10);
    const auto right = acknowledgement("PMGNTRK,one").substr(1, 10);
    EXPECT_TRUE(waitFor(receiver, LogKind::kSent, "PMGNTRK,two"));
    EXPECT_THAT(support::logged(receiver, {LogKind::kReceived, LogKind::kSent}),
                ElementsAre("received PMGNCMD,TRACK,2", testing::StartsWith("sent PMGNCSM"),
                            "sent PMGNTRK,one", "received " + wrong, "received " + right,
                            "sent PMGNTRK,two"));
}

TEST(Receiver, RepeatsAnUnacknowledgedSentenceAndThenContinues)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
    EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
    client.acknowledge("PMGNRTE,one");
    EXPECT_EQ(client.line(), sentence(support::kEnd));
}

TEST(Receiver, GivesUpAfterFiveAttempts)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    client.line();
    for (int sending = 0; sending < 5; ++sending)
        EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
    EXPECT_TRUE(waitFor(receiver, LogKind::kGaveUp, "PMGNRTE,one"));
    client.acknowledge("PMGNRTE,one"); // too late
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Receiver, ACommandEndsADataPhase)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNWPL,one"));
    client.say("PMGNCMD,TOFF");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,TOFF"));
    client.acknowledge("PMGNWPL,one");
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Receiver, ARepeatedCommandRestartsItsDataPhase)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    client.line();
    client.line();
    client.acknowledge("PMGNWPL,one");
    EXPECT_EQ(client.line(), sentence("PMGNWPL,two"));
    EXPECT_EQ(receivePhase(client, "PMGNCMD,WAYPOINT").at(1), "PMGNWPL,one");
}

TEST(Receiver, AcknowledgesUnknownCommands)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    for (const auto* body : {"PMGNCMD,TRACK", "PMGNCMD,TRACK,1", "PMGNCMD,VERSIO", "PMGNWPL,one"}) {
        client.say(body);
        EXPECT_EQ(client.line(), acknowledgement(body));
    }
}

TEST(Receiver, DoesNotAnswerBrokenSentences)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    for (const auto& broken : {support::breakChecksum(sentence("PMGNCMD,TON")),
                               std::string{"PMGNCMD,TON"}, std::string{}})
        client.write(broken + "\r\n");
    client.say("PMGNCMD,TOFF");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,TOFF"));
    EXPECT_THAT(
        support::logged(receiver, {LogKind::kUnreadable}),
        ElementsAre("unreadable $PMGNCMD,TON*20", "unreadable PMGNCMD,TON", "unreadable 4800"));
}

TEST(Receiver, AcceptsACommandInPiecesAndTwoAtOnce)
{
    const Receiver receiver{unpaced()};
    LineClient client{receiver.path(), B4800};
    const auto line = sentence("PMGNCMD,TON") + "\r\n";
    for (const char byte : line)
        client.write({&byte, 1});
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    client.write(line + sentence("PMGNCMD,TOFF") + "\r\n");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,TOFF"));
}

TEST(Receiver, KeepsSpeedAndHandshakingWhenTheLineIsClosed)
{
    const Receiver receiver{withoutHandshake()};
    {
        LineClient client{receiver.path(), B4800};
        client.say("PMGNCMD,HANDON");
        client.say("PMGNCMD,BAUD,9600");
        EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD,9600"));
        client.say("PMGNCMD,ROUTE");
    }
    ASSERT_TRUE(waitFor(receiver, LogKind::kClosed));
    LineClient client{receiver.path(), B9600};
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,28"));
    EXPECT_EQ(client.line(), support::kVersionLine);
}

TEST(Receiver, ChattersAfterItsAnswers)
{
    auto settings = unpaced();
    settings.chatter = true;
    const Receiver receiver{settings};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    EXPECT_EQ(client.line(), sentence("PMGNMSG,TON"));
    client.say("PMGNCMD,BAUD,115200");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD,115200"));
    client.setSpeed(B115200);
    EXPECT_EQ(client.line(), sentence("PMGNMSG,BAUD,115200"));
    for (const std::string command : {"TOFF", "HANDOFF", "BAUD,115200"}) {
        client.say("PMGNCMD," + command);
        EXPECT_EQ(client.line(), acknowledgement("PMGNCMD," + command));
        EXPECT_EQ(client.line(), sentence("PMGNMSG," + command));
    }
}

TEST(Receiver, DoesNotChatterAfterOtherAnswers)
{
    auto settings = unpaced();
    settings.chatter = true;
    const Receiver receiver{settings};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,VERSION");
    client.line();
    client.line();
    client.say("PMGNCMD,HANDON");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,HANDON"));
    client.say("PMGNCMD,ROUTE");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,ROUTE"));
    EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
}

TEST(Receiver, LogsInOrderOfTime)
{
    auto settings = unpaced();
    settings.paced = true;
    settings.speed = 115200;
    const Receiver receiver{settings};
    {
        LineClient client{receiver.path(), B115200};
        receivePhase(client, "PMGNCMD,WAYPOINT");
        ASSERT_TRUE(
            waitFor(receiver, LogKind::kReceived, acknowledgement(support::kEnd).substr(1, 10)));
    }
    ASSERT_TRUE(waitFor(receiver, LogKind::kClosed));
    const auto log = receiver.log();
    EXPECT_TRUE(std::is_sorted(log.begin(), log.end(),
                               [](const auto& a, const auto& b) { return a.seconds < b.seconds; }));
    EXPECT_EQ(log.front().kind, LogKind::kOpened);
    EXPECT_EQ(log.back().kind, LogKind::kClosed);
}

TEST(Receiver, WritesItsLogAsJson)
{
    std::ostringstream lines;
    std::vector<simulator::LogEntry> log;
    {
        auto settings = unpaced();
        settings.log = &lines;
        const Receiver receiver{settings};
        LineClient client{receiver.path(), B4800};
        client.say("PMGNCMD,TON");
        client.line();
        ASSERT_TRUE(waitFor(receiver, LogKind::kSent));
        log = receiver.log();
    }
    std::istringstream written{lines.str()};
    std::string line;
    for (const auto& entry : log) {
        ASSERT_TRUE(std::getline(written, line));
        EXPECT_EQ(line, jsonLine(entry));
    }
}

TEST(Receiver, EndsAfterASessionWithOnce)
{
    auto settings = unpaced();
    settings.once = true;
    const Receiver receiver{settings};
    {
        const LineClient stranger{receiver.path(), B9600};
        stranger.say("PMGNCMD,TON"); // at the wrong speed, which does not count as a session
    }
    ASSERT_TRUE(waitFor(receiver, LogKind::kClosed));
    EXPECT_FALSE(receiver.waitUntilEnded(std::chrono::milliseconds{0}));
    {
        LineClient client{receiver.path(), B4800};
        client.say("PMGNCMD,TON");
        EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    }
    EXPECT_TRUE(receiver.waitUntilEnded(std::chrono::seconds{30}));
}

} // namespace
