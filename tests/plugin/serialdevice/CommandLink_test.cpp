// SPDX-License-Identifier: MIT
// Each operation of the link on a line in memory, where waiting takes no time.

#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>
#include <plugin/serialdevice/CommandLink.h>
#include <support/LogCapture.h>
#include <support/MemoryLine.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace magellan {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

class Link : public testing::Test {
protected:
    support::MemoryLineLog done;
    support::MemoryLine line{done};
    support::LogCapture logged;
    OperationMonitor monitor;
    OperationAccount account{monitor};
    CommandLink link{line, monitor, account};
};

TEST_F(Link, SendsEachCommandFramedInOneWriteAndReadsNothing)
{
    for (const auto& [body, framed] : std::vector<std::pair<std::string, std::string>>{
             {"PMGNCMD,VERSION", "$PMGNCMD,VERSION*28\r\n"},
             {"PMGNCMD,TON", "$PMGNCMD,TON*27\r\n"},
             {"PMGNCMD,END", "$PMGNCMD,END*3D\r\n"},
             {"PMGNCMD,HANDON", "$PMGNCMD,HANDON*70\r\n"},
             {"PMGNCMD,HANDOFF", "$PMGNCMD,HANDOFF*3E\r\n"},
         }) {
        done.calls.clear();
        link.sendCommand(body);
        EXPECT_THAT(done.calls, ElementsAre("send " + framed));
    }
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST_F(Link, AwaitsOneLineAndLogsCommandAndReply)
{
    line.saysSentence("PMGNVER,017,4.05,Sport");
    EXPECT_THAT(link.sendCommandAwaitResponse("PMGNCMD,VERSION"),
                Optional(std::string{"PMGNVER,017,4.05,Sport"}));
    EXPECT_THAT(done.calls, ElementsAre("send $PMGNCMD,VERSION*28\r\n", "read"));
    EXPECT_THAT(logged.lines(), ElementsAre("PMGNCMD,VERSION => PMGNVER,017,4.05,Sport"));
    EXPECT_TRUE(line.askedAsExpected());
}

TEST_F(Link, TreatsATimeOutAndABadChecksumAsNoReplyWithoutLogging)
{
    line.keepsSilent();
    line.says(support::breakChecksum(support::sentence("PMGNCSM,28")));
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(link.sendCommandAwaitResponse("PMGNCMD,VERSION"), std::nullopt);
    EXPECT_THAT(done.sent(), ElementsAre("PMGNCMD,VERSION", "PMGNCMD,VERSION"));
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST_F(Link, AcknowledgesAValidSentenceAndLogsIt)
{
    line.saysSentence("PMGNCMD,END");
    EXPECT_THAT(link.readResponseWithChecksum(), Optional(std::string{"PMGNCMD,END"}));
    EXPECT_THAT(done.calls,
                ElementsAre("read", "send $PMGNCSM,3D*" +
                                        support::sentence("PMGNCSM,3D").substr(12) + "\r\n"));
    EXPECT_THAT(logged.lines(), ElementsAre(" -- PMGNCMD,END"));
    EXPECT_TRUE(line.askedAsExpected());
}

TEST_F(Link, AcknowledgesASentenceBeforeItLogsIt)
{
    const gps::LogSubscription listening{[this](std::string_view text, const gps::Error*) {
        done.calls.push_back("log" + std::string{text});
    }};
    line.saysSentence("PMGNCMD,END");
    (void)link.readResponseWithChecksum();
    EXPECT_THAT(done.calls, ElementsAre("read", testing::StartsWith("send $PMGNCSM,3D*"),
                                        "log -- PMGNCMD,END"));
}

TEST_F(Link, WritesTheAcknowledgedChecksumItselfInUpperCase)
{
    auto lower = support::sentence("PMGNCMD,END"); // "...*3D"
    lower.back() = 'd';
    line.says(lower);
    (void)link.readResponseWithChecksum();
    line.saysSentence("AA"); // checksum 00 is written with two digits, too
    (void)link.readResponseWithChecksum();
    EXPECT_THAT(done.sent(), ElementsAre("PMGNCSM,3D", "PMGNCSM,00"));
}

TEST_F(Link, NeitherAcknowledgesNorReturnsASentenceWithAWrongChecksum)
{
    const auto broken = support::breakChecksum(support::sentence("PMGNCMD,END"));
    line.says(broken);
    EXPECT_EQ(link.readResponseWithChecksum(), std::nullopt);
    EXPECT_THAT(done.calls, ElementsAre("read"));
    EXPECT_THAT(logged.lines(), ElementsAre(" -- invalid/no response -- " + broken + ' '));
}

TEST_F(Link, DoesNotLogATimeOutOfADataSentence)
{
    EXPECT_EQ(link.readResponseWithChecksum(), std::nullopt);
    EXPECT_THAT(done.calls, ElementsAre("read"));
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST_F(Link, StopsAtTheFirstAcknowledgement)
{
    line.saysSentence("PMGNCSM,27");
    EXPECT_TRUE(link.sendCommandWithChecksum("PMGNCMD,TON"));
    EXPECT_THAT(done.sent(), ElementsAre("PMGNCMD,TON"));
}

TEST_F(Link, AcceptsTheFifthAcknowledgement)
{
    line.keepsSilent(4);
    line.saysSentence("PMGNCSM,27");
    EXPECT_TRUE(link.sendCommandWithChecksum("PMGNCMD,TON"));
    EXPECT_THAT(done.sent(), SizeIs(5));
}

TEST_F(Link, GivesUpAfterExactlyFiveAttempts)
{
    line.keepsSilent(5);
    line.saysSentence("PMGNCSM,27"); // too late
    EXPECT_FALSE(link.sendCommandWithChecksum("PMGNCMD,TON"));
    EXPECT_THAT(done.sent(), AllOf(SizeIs(5), Each(std::string{"PMGNCMD,TON"})));
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST_F(Link, CountsEveryOtherReplyAsAFailedAttempt)
{
    line.saysSentence("PMGNWPL,4600.0,N,00700.0,E,0,M,A,,a"); // a data sentence
    line.saysSentence("PMGNCSM,28");                          // acknowledges another command
    line.saysSentence("PMGNCSM,27,");
    line.saysSentence("PMGNCSM,2");
    line.saysSentence("PMGNCSM,27");
    EXPECT_TRUE(link.sendCommandWithChecksum("PMGNCMD,TON"));
    EXPECT_THAT(done.sent(), SizeIs(5));
}

TEST_F(Link, ComparesAcknowledgementsCaseSensitively)
{
    for (int i = 0; i < 5; ++i)
        line.saysSentence("PMGNCSM,3d"); // acknowledges END, but its checksum is written 3D
    EXPECT_FALSE(link.sendCommandWithChecksum("PMGNCMD,END"));
}

TEST_F(Link, AFailureOfTheLineThrows)
{
    line.failsAfter(0);
    EXPECT_THROW((void)link.readLine(), gps::SerialFailure);
}

} // namespace
} // namespace magellan
