// SPDX-License-Identifier: MIT
// The protocol without a line: what is sent in response to what arrives.

#include "simulator/Session.h"
#include "support/Sentence.h"

#include <tools/simulator/Conversation.h>
#include <tools/simulator/Damage.h>

#include <gmock/gmock.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace {

using simulator::acknowledgementOf;
using simulator::Clock;
using std::chrono::milliseconds;
using testing::IsEmpty;

const Clock::time_point kStart = Clock::now();

// A conversation without a line: what arrives and what is sent are calls.
class Conversation : public testing::Test {
protected:
    explicit Conversation(simulator::Settings settings = support::unpaced())
        : settings_(std::move(settings)), conversation_(settings_, log_)
    {
        conversation_.setOtherSpeed(4800, kStart);
    }

    void hear(std::string_view body, int speed = 4800, Clock::time_point when = kStart)
    {
        conversation_.take({support::sentence(body) + '\r', speed, when});
    }

    // What is sent next, as the log has it; empty if nothing is due.
    std::string say(Clock::time_point now = kStart)
    {
        const auto next = conversation_.next(now);
        if (!next)
            return {};
        conversation_.sent(*next, now);
        return next->text;
    }

    const simulator::Settings settings_;
    simulator::SessionLog log_{nullptr};
    simulator::Conversation conversation_;
};

TEST_F(Conversation, SendsNothingWithoutACommand)
{
    EXPECT_THAT(say(), IsEmpty());
    EXPECT_EQ(conversation_.due(), Clock::time_point::max());
    EXPECT_FALSE(conversation_.hasUnderstood());
}

TEST_F(Conversation, AcknowledgesACommandAndThenAnswersIt)
{
    hear("PMGNCMD,VERSION");
    EXPECT_TRUE(conversation_.hasUnderstood());
    EXPECT_EQ(say(), acknowledgementOf("PMGNCMD,VERSION"));
    EXPECT_THAT(say(), testing::StartsWith("PMGNVER,"));
    EXPECT_THAT(say(), IsEmpty());
}

TEST_F(Conversation, IgnoresCommandsAtAnotherSpeedOrWithABrokenChecksum)
{
    hear("PMGNCMD,VERSION", 9600);
    conversation_.take(
        {support::breakChecksum(support::sentence("PMGNCMD,VERSION")), 4800, kStart});
    EXPECT_FALSE(conversation_.hasUnderstood());
    EXPECT_THAT(say(), IsEmpty());
}

TEST_F(Conversation, ChangesItsSpeedAfterTheAcknowledgementWasSent)
{
    hear("PMGNCMD,BAUD,57600");
    EXPECT_EQ(conversation_.speed(), 4800);
    (void)say();
    EXPECT_EQ(conversation_.speed(), 57600);
}

TEST_F(Conversation, KeepsItsSpeedForANumberThatIsNotALineSpeed)
{
    for (const char* const number : {"300", "57600x", "", "99999999999"}) {
        hear(std::string{"PMGNCMD,BAUD,"} + number);
        (void)say();
        EXPECT_EQ(conversation_.speed(), 4800) << number;
    }
}

TEST_F(Conversation, DataSentencesFollowTheirAcknowledgements)
{
    hear("PMGNCMD,TRACK,2");
    EXPECT_EQ(say(), acknowledgementOf("PMGNCMD,TRACK,2"));
    EXPECT_EQ(say(), "PMGNTRK,one");
    EXPECT_THAT(say(), IsEmpty());
    hear(acknowledgementOf("PMGNTRK,one"));
    EXPECT_EQ(say(), "PMGNTRK,two");
}

TEST_F(Conversation, CommandEndsTheDataPhase)
{
    hear("PMGNCMD,TRACK,2");
    (void)say();
    EXPECT_EQ(say(), "PMGNTRK,one");
    hear("PMGNCMD,TOFF");
    EXPECT_EQ(say(), acknowledgementOf("PMGNCMD,TOFF"));
    EXPECT_THAT(say(kStart + milliseconds{5000}), IsEmpty());
}

TEST_F(Conversation, RestartForgetsTheSession)
{
    hear("PMGNCMD,TRACK,2");
    conversation_.restart();
    EXPECT_FALSE(conversation_.hasUnderstood());
    EXPECT_THAT(say(), IsEmpty());
}

class HangingUp : public Conversation {
protected:
    HangingUp() : Conversation(support::unpaced("ton:hang-up")) {}
};

TEST_F(HangingUp, IsReportedAtItsCommandOnly)
{
    hear("PMGNCMD,VERSION");
    EXPECT_FALSE(conversation_.hasHungUp());
    hear("PMGNCMD,TON");
    EXPECT_TRUE(conversation_.hasHungUp());
}

} // namespace
