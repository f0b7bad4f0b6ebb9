// SPDX-License-Identifier: MIT
// The bytes on the wire for each kind of damage.

#include "support/Sentence.h"

#include <tools/simulator/Damage.h>

#include <gmock/gmock.h>

namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::wireForm;

constexpr char kBody[] = "PMGNCMD,END";

std::string damaged(FaultKind kind, std::string_view body = kBody)
{
    const Fault fault{simulator::Step::kTransferOn, kind};
    return wireForm(body, &fault);
}

TEST(Damage, IntactSentenceIsFramed)
{
    EXPECT_EQ(wireForm(kBody), support::sentence(kBody) + "\r\n");
}

TEST(Damage, FaultsThatAreNotDamageChangeNothing)
{
    for (const auto kind : {FaultKind::kSilence, FaultKind::kLostAck, FaultKind::kDelay,
                            FaultKind::kStop, FaultKind::kHangUp})
        EXPECT_EQ(damaged(kind), wireForm(kBody));
}

TEST(Damage, AcknowledgementHoldsTheChecksumInUpperCase)
{
    EXPECT_EQ(simulator::acknowledgementOf("A"), "PMGNCSM,41");
    EXPECT_EQ(simulator::acknowledgementOf("A\x0b"), "PMGNCSM,4A");
}

TEST(Damage, WrongAcknowledgementIsValidAndAffectsAcknowledgementsOnly)
{
    EXPECT_EQ(damaged(FaultKind::kWrongAck, "PMGNCSM,4A"), wireForm("PMGNCSM,40"));
    EXPECT_EQ(damaged(FaultKind::kWrongAck, "PMGNCSM,40"), wireForm("PMGNCSM,41"));
    EXPECT_EQ(damaged(FaultKind::kWrongAck), wireForm(kBody));
}

TEST(Damage, GarbleChangesOneBit)
{
    const auto intact = wireForm(kBody);
    const auto garbled = damaged(FaultKind::kGarble);
    ASSERT_EQ(garbled.size(), intact.size());
    int bits = 0;
    for (std::size_t i = 0; i < intact.size(); ++i)
        bits += __builtin_popcount(static_cast<unsigned>(intact[i] ^ garbled[i]));
    EXPECT_EQ(bits, 1);
}

TEST(Damage, TruncatedSentenceHasNoLineEnd)
{
    const auto intact = wireForm(kBody);
    EXPECT_EQ(damaged(FaultKind::kTruncate), intact.substr(0, intact.size() / 2));
}

TEST(Damage, NoiseIsTheSameLineEachTime)
{
    const auto noisy = damaged(FaultKind::kNoise);
    EXPECT_EQ(noisy, damaged(FaultKind::kNoise));
    EXPECT_THAT(noisy, testing::EndsWith("\r\n" + wireForm(kBody)));
    EXPECT_EQ(noisy.size(), 60 + 2 + wireForm(kBody).size());
}

TEST(Damage, NulBytesAreBeforeAndInTheSentence)
{
    const auto line = damaged(FaultKind::kNul);
    EXPECT_EQ(line.substr(0, 4), std::string("\0\0\0$", 4));
    EXPECT_EQ(std::count(line.begin(), line.end(), '\0'), 4);
}

TEST(Damage, LongSentenceIsValid)
{
    const auto line = damaged(FaultKind::kLong);
    EXPECT_EQ(line.size(), simulator::kLongSentence + 2);
    EXPECT_EQ(line, support::sentence(line.substr(1, simulator::kLongSentence - 4)) + "\r\n");
}

} // namespace
