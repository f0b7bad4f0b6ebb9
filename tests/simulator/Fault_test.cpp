// SPDX-License-Identifier: MIT
// Reading faults, and what each one does to a session with a running receiver.

#include "simulator/Session.h"

#include <tools/simulator/Fault.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using simulator::LogKind;
using simulator::Receiver;
using support::acknowledgement;
using support::LineClient;
using support::sentence;
using support::unpaced;
using support::waitFor;
using testing::EndsWith;
using testing::HasSubstr;

TEST(Fault, IsReadAsItIsWritten)
{
    for (const auto& step : simulator::kSteps) {
        for (const auto& kind : simulator::kFaultKinds) {
            const auto text = std::string{step.name} + ':' + std::string{kind.name};
            for (const auto& whole : {text, text + ":0", text + ":12"}) {
                const auto fault = simulator::parseFault(whole);
                ASSERT_EQ(fault.has_value(), applies(kind.value, step.value)) << whole;
                EXPECT_EQ(fault ? describe(*fault) : whole, whole);
            }
        }
    }
}

TEST(Fault, AnyOtherTextIsRejected)
{
    for (const auto* text :
         {"", "ton", "ton:", ":silence", "ton:quiet", "tone:silence", "TON:silence",
          "ton:silence:", "ton:silence:x", "ton:silence:-1", "ton:silence:1x", "ton:silence:1:2",
          "ton:silence:99999999999", "ton:stop", "waypoint-data:wrong-ack", " ton:silence"})
        EXPECT_FALSE(simulator::parseFault(text)) << text;
}

TEST(Fault, SilenceOmitsTheReaction)
{
    const Receiver receiver{unpaced("handoff:silence")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,HANDOFF");
    client.say("PMGNCMD,TON"); // still acknowledged
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    EXPECT_TRUE(waitFor(receiver, LogKind::kFault, "handoff:silence"));
}

TEST(Fault, ANumberLimitsItToTheFirstTimes)
{
    const Receiver receiver{unpaced("ton:silence:2")};
    for (int session = 0; session < 2; ++session) { // the count restarts with each session
        {
            LineClient client{receiver.path(), B4800};
            for (int time = 0; time < 3; ++time)
                client.say("PMGNCMD,TON");
            client.say("PMGNCMD,TOFF");
            EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
            EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,TOFF"));
        }
        int closings = 0;
        ASSERT_TRUE(receiver.waitFor([&](const auto& entry) {
            return entry.kind == LogKind::kClosed && closings++ == session;
        }));
    }
}

TEST(Fault, LostAckOmitsTheAnswerButPerformsTheCommand)
{
    const Receiver receiver{unpaced("baud:lost-ack")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,BAUD,9600");
    ASSERT_TRUE(waitFor(receiver, LogKind::kOwnSpeed));
    client.setSpeed(B9600);
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Fault, LostAckKeepsTheRestOfTheAnswer)
{
    const Receiver receiver{unpaced("version:lost-ack")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), support::kVersionLine);
}

TEST(Fault, WrongAckIsAValidSentenceWithAnotherChecksum)
{
    const Receiver receiver{unpaced("ton:wrong-ack")};
    LineClient client{receiver.path(), B4800};
    for (int time = 0; time < 2; ++time) {
        client.say("PMGNCMD,TON");
        EXPECT_EQ(client.line(), sentence("PMGNCSM,20"));
    }
}

TEST(Fault, BaudBackIsABaudCommandAfterToff)
{
    const Receiver receiver{unpaced("baud-back:wrong-ack")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,BAUD,4800");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,BAUD,4800"));
    client.say("PMGNCMD,TOFF");
    client.line();
    client.say("PMGNCMD,BAUD,4800");
    EXPECT_NE(client.line(), acknowledgement("PMGNCMD,BAUD,4800"));
}

TEST(Fault, GarbleChangesOneBit)
{
    const Receiver receiver{unpaced("ton:garble:1")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), "$PMGNCSM-27*60"); // from "$PMGNCSM,27*60"
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), "$PMGNCSM,27*60");
}

TEST(Fault, TruncateOmitsTheLineEnd)
{
    const Receiver receiver{unpaced("ton:truncate:1")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), "$PMGNCSM$PMGNCSM,27*60");
}

TEST(Fault, NoisePrecedesTheAnswerAsALine)
{
    const Receiver receiver{unpaced("ton:noise")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line().size(), 60U);
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Fault, NulBytesAreBeforeAndInTheSentence)
{
    const Receiver receiver{unpaced("ton:nul")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), std::string(3, '\0') + "$PMGNCSM" + '\0' + ",27*60");
}

TEST(Fault, LongIsAValidSentenceOf100000Bytes)
{
    const Receiver receiver{unpaced("ton:long")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    const auto line = client.line();
    EXPECT_EQ(line.size(), 100000U);
    EXPECT_EQ(line, sentence(line.substr(1, line.size() - 4)));
}

TEST(Fault, DelayPostponesTheAnswer)
{
    const Receiver receiver{unpaced("ton:delay:200")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
    ASSERT_TRUE(waitFor(receiver, LogKind::kSent));
    const auto log = receiver.log();
    EXPECT_GE(log.back().seconds - log.at(log.size() - 3).seconds,
              0.199); // the entries are "received", "fault" and "sent"
}

TEST(Fault, DelayPostponesTheFirstDataSentence)
{
    const Receiver receiver{unpaced("route-data:delay:200")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,ROUTE"));
    EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
    EXPECT_TRUE(waitFor(receiver, LogKind::kFault, "route-data:delay:200"));
}

TEST(Fault, EndlessBytesHaveNoLineEnd)
{
    const Receiver receiver{unpaced("ton:endless")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TON");
    const auto& bytes = client.bytes(200000);
    EXPECT_GE(bytes.size(), 200000U);
    EXPECT_EQ(bytes.find_first_not_of('X'), std::string::npos);
}

TEST(Fault, EndlessEndsWhenTheLineIsClosed)
{
    const Receiver receiver{unpaced("ton:endless")};
    {
        LineClient client{receiver.path(), B4800};
        client.say("PMGNCMD,TON");
        client.bytes(1000);
    }
    ASSERT_TRUE(waitFor(receiver, LogKind::kClosed));
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TOFF");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,TOFF"));
}

TEST(Fault, FloodSendsValidSentencesForever)
{
    const Receiver receiver{unpaced("track-data:flood:2")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,TRACK,2");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNTRK,one"));
    client.acknowledge("PMGNTRK,one");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(client.line(), sentence("PMGNTRK,two"));
    client.say("PMGNCMD,TOFF"); // changes nothing
    ASSERT_TRUE(waitFor(receiver, LogKind::kReceived, "PMGNCMD,TOFF"));
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(client.line(), sentence("PMGNTRK,two"));
}

TEST(Fault, StopEndsADataPhaseWithoutEndSentence)
{
    const Receiver receiver{unpaced("waypoint-data:stop:2")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    client.line();
    for (const auto* body : {"PMGNWPL,one", "PMGNWPL,two"}) {
        EXPECT_EQ(client.line(), sentence(body));
        client.acknowledge(body);
    }
    ASSERT_TRUE(waitFor(receiver, LogKind::kFault));
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Fault, SilenceInADataPhaseSendsNoData)
{
    const Receiver receiver{unpaced("waypoint-data:silence")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    EXPECT_EQ(client.line(), acknowledgement("PMGNCMD,WAYPOINT"));
    ASSERT_TRUE(waitFor(receiver, LogKind::kFault));
    client.say("PMGNCMD,TON");
    EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
}

TEST(Fault, LostAckInADataPhaseRepeatsTheSentence)
{
    const Receiver receiver{unpaced("route-data:lost-ack")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    client.line();
    for (int sending = 0; sending < 2; ++sending) {
        EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
        client.acknowledge("PMGNRTE,one");
    }
}

TEST(Fault, DamagesOneDataSentenceOnceAndRepeatsItIntact)
{
    const Receiver receiver{unpaced("waypoint-data:garble:2")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNWPL,one"));
    client.acknowledge("PMGNWPL,one");
    EXPECT_NE(client.line(), sentence("PMGNWPL,two"));
    EXPECT_EQ(client.line(), sentence("PMGNWPL,two"));
    client.acknowledge("PMGNWPL,two");
    EXPECT_EQ(client.line(), sentence("PMGNWPL,three"));
}

TEST(Fault, WithNumberZeroDamagesEverySentenceAndRepeat)
{
    const Receiver receiver{unpaced("route-data:garble:0")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    client.line();
    const auto first = client.line();
    EXPECT_NE(first, sentence("PMGNRTE,one"));
    EXPECT_EQ(client.line(), first);
    client.acknowledge("PMGNRTE,one");
    EXPECT_NE(client.line(), sentence(support::kEnd));
}

TEST(Fault, CountsTheEndSentenceAsTheLastOne)
{
    const Receiver receiver{unpaced("route-data:garble:2")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,ROUTE");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNRTE,one"));
    client.acknowledge("PMGNRTE,one");
    EXPECT_THAT(client.line(),
                testing::AllOf(testing::StartsWith("$PMGN"), testing::Ne(sentence(support::kEnd))));
    EXPECT_EQ(client.line(), sentence(support::kEnd));
}

TEST(Fault, HangUpRemovesThePortAtEachStep)
{
    for (const auto& [step, command] : {std::pair{"version", "VERSION"},
                                        {"handon", "HANDON"},
                                        {"ton", "TON"},
                                        {"baud", "BAUD,115200"},
                                        {"waypoint", "WAYPOINT"},
                                        {"track", "TRACK,2"},
                                        {"route", "ROUTE"},
                                        {"toff", "TOFF"},
                                        {"handoff", "HANDOFF"}}) {
        const Receiver receiver{unpaced(std::string{step} + ":hang-up")};
        LineClient client{receiver.path(), B4800};
        client.say(std::string{"PMGNCMD,"} + command);
        EXPECT_EQ(client.line(), "gone") << step;
        EXPECT_TRUE(receiver.waitUntilEnded(std::chrono::seconds{30})) << step;
        EXPECT_EQ(receiver.log().back().kind, LogKind::kHungUp) << step;
    }
}

TEST(Fault, HangUpPrecedesItsDataSentence)
{
    const Receiver receiver{unpaced("waypoint-data:hang-up:2")};
    LineClient client{receiver.path(), B4800};
    client.say("PMGNCMD,WAYPOINT");
    client.line();
    EXPECT_EQ(client.line(), sentence("PMGNWPL,one"));
    client.acknowledge("PMGNWPL,one");
    EXPECT_EQ(client.line(), "gone");
}

} // namespace
