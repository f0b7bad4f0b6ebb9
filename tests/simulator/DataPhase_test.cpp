// SPDX-License-Identifier: MIT
// One data phase with made-up times: order, repeats, acknowledgements and faults.

#include <tools/simulator/Damage.h>
#include <tools/simulator/DataPhase.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace {

using simulator::acknowledgementOf;
using simulator::DataPhase;
using std::chrono::milliseconds;

constexpr char kEnd[] = "PMGNCMD,END";
const simulator::Clock::time_point kDataStart{milliseconds{1000}};

class DataPhaseTest : public testing::Test {
protected:
    DataPhase phase(std::string_view fault = {}, bool acknowledged = true)
    {
        if (!fault.empty())
            faults_ = {*simulator::parseFault(fault)};
        return {simulator::Step::kTrackData, sentences_, faults_, kDataStart, acknowledged};
    }

    std::vector<std::string> sentences_{"PMGNTRK,one", "PMGNTRK,two"};
    std::vector<simulator::Fault> faults_;
};

TEST_F(DataPhaseTest, SendsEachSentenceAndEnd)
{
    auto sending = phase();
    EXPECT_EQ(sending.due(), kDataStart);
    for (const auto* const body : {"PMGNTRK,one", "PMGNTRK,two", kEnd}) {
        EXPECT_FALSE(sending.isOver());
        EXPECT_EQ(sending.sentence(), body);
        sending.sent(kDataStart);
        EXPECT_TRUE(sending.take(acknowledgementOf(body), kDataStart + milliseconds{5}));
        EXPECT_EQ(sending.due(), kDataStart + milliseconds{5});
    }
    EXPECT_TRUE(sending.isOver());
}

TEST_F(DataPhaseTest, DoesNotWaitWithoutHandshaking)
{
    auto sending = phase({}, false);
    sending.sent(kDataStart + milliseconds{7});
    EXPECT_EQ(sending.sentence(), "PMGNTRK,two");
    EXPECT_EQ(sending.due(), kDataStart + milliseconds{7});
}

TEST_F(DataPhaseTest, RepeatsASentenceAfterOneAndAHalfSecondsFiveTimesInAll)
{
    auto sending = phase();
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(sending.isExhausted()) << i;
        sending.sent(kDataStart);
        EXPECT_EQ(sending.due(), kDataStart + milliseconds{1500});
        EXPECT_EQ(sending.sentence(), "PMGNTRK,one");
    }
    EXPECT_TRUE(sending.isExhausted());
}

TEST_F(DataPhaseTest, AcceptsTheExpectedAcknowledgementOnly)
{
    auto sending = phase();
    EXPECT_FALSE(sending.take(acknowledgementOf("PMGNTRK,one"), kDataStart)); // not sent yet
    sending.sent(kDataStart);
    EXPECT_FALSE(sending.take(acknowledgementOf("PMGNTRK,two"), kDataStart));
    EXPECT_TRUE(sending.take(acknowledgementOf("PMGNTRK,one"), kDataStart));
}

TEST_F(DataPhaseTest, LostAcknowledgementsAreIgnored)
{
    auto sending = phase("track-data:lost-ack");
    sending.sent(kDataStart);
    EXPECT_FALSE(sending.take(acknowledgementOf("PMGNTRK,one"), kDataStart));
}

TEST_F(DataPhaseTest, DelayPostponesTheFirstSentence)
{
    EXPECT_EQ(phase("track-data:delay:30").due(), kDataStart + milliseconds{30});
    EXPECT_EQ(phase("waypoint-data:delay:30").due(), kDataStart); // a fault of another step
}

TEST_F(DataPhaseTest, FaultHappensOnceAtItsSentence)
{
    auto sending = phase("track-data:garble:2");
    EXPECT_EQ(sending.fault(), nullptr);
    sending.sent(kDataStart);
    (void)sending.take(acknowledgementOf("PMGNTRK,one"), kDataStart);
    EXPECT_NE(sending.fault(), nullptr);
    sending.sent(kDataStart);
    EXPECT_EQ(sending.fault(), nullptr); // the repeat is intact
}

TEST_F(DataPhaseTest, FaultWithNumberZeroHappensToRepeatsToo)
{
    auto sending = phase("track-data:garble:0");
    EXPECT_NE(sending.fault(), nullptr);
    sending.sent(kDataStart);
    EXPECT_NE(sending.fault(), nullptr);
}

} // namespace
