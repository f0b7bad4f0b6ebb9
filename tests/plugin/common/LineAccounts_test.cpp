// SPDX-License-Identifier: MIT
// Which lines count, and for what reason a line is skipped.

#include <plugin/common/LineAccounts.h>
#include <support/Sentence.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

namespace magellan {
namespace {

using gps::SkipReason;
using support::sentence;

TEST(LineAccounts, AnInvalidLineIsDamagedIfItHasTheFormOfASentence)
{
    const std::pair<std::string, SkipReason> lines[] = {
        {"$A*42", SkipReason::kWrongChecksum},
        {"$A*fF", SkipReason::kWrongChecksum},
        {"$A*42\r", SkipReason::kWrongChecksum},
        {"$A*42\r\n", SkipReason::kWrongChecksum},
        {"$\xC3*42", SkipReason::kWrongChecksum},
        {"$*00", SkipReason::kNotASentence}, // nothing between
        {"$A*4", SkipReason::kNotASentence},
        {"$A*4g", SkipReason::kNotASentence},
        {"$A*g4", SkipReason::kNotASentence},
        {"A*41", SkipReason::kNotASentence},
        {"$A41", SkipReason::kNotASentence},
        {"$", SkipReason::kNotASentence},
        {"x", SkipReason::kNotASentence},
    };
    for (const auto& [line, reason] : lines)
        EXPECT_EQ(defectOf(line), reason) << line;
}

TEST(LineAccounts, EmptyLinesEndAndAcknowledgementsDoNotCount)
{
    gps::LineAccount lines;
    for (const auto& line : {std::string{}, std::string{"\r\n"}, std::string{"\r"},
                             sentence("PMGNCMD,END"), sentence("PMGNCSM,00")})
        addOther(lines, 1, line);
    EXPECT_EQ(lines.seen, 0U);
    addOther(lines, 2, sentence("PMGNCMD,ENDS"));
    addOther(lines, 3, sentence("PMGNCSM"));
    addOther(lines, 4, " ");
    EXPECT_EQ(lines.seen, 3U);
    EXPECT_EQ(lines.skippedFor(SkipReason::kOtherKind), 2U);
    EXPECT_EQ(lines.skippedFor(SkipReason::kNotASentence), 1U);
}

TEST(LineAccounts, AReplacedLineIsNoLongerAccepted)
{
    gps::LineAccount lines;
    addAccepted(lines);
    addAccepted(lines);
    addReplaced(lines, 1);
    EXPECT_EQ(lines.seen, 2U);
    EXPECT_EQ(lines.accepted, 1U);
    EXPECT_EQ(lines.skippedFor(SkipReason::kReplaced), 1U);
}

TEST(LineAccounts, ADefectIsNotALineOfItsOwn)
{
    gps::LineAccount lines;
    addAccepted(lines);
    addDefect(lines, 1, SkipReason::kUnknownPoint);
    addDefect(lines, 1, SkipReason::kUnknownPoint);
    EXPECT_EQ(lines.seen, 1U);
    EXPECT_EQ(lines.accepted, 1U);
    EXPECT_EQ(detailCount(lines), 2U);
}

TEST(LineAccounts, HaveAThousandDetailsAndCountEverything)
{
    constexpr auto kMost = gps::TransferAccount::kMostDetails;
    gps::LineAccount lines;
    for (std::size_t i = 1; i <= kMost; ++i)
        addSkipped(lines, i, SkipReason::kOtherKind);
    EXPECT_EQ(lines.details.size(), kMost);
    EXPECT_EQ(lines.details.back().number, kMost);
    addSkipped(lines, kMost + 1, SkipReason::kOtherKind);
    EXPECT_EQ(lines.details.size(), kMost);
    EXPECT_EQ(lines.details.back().number, kMost);
    EXPECT_EQ(lines.skippedFor(SkipReason::kOtherKind), kMost + 1);
}

TEST(LineAccounts, CountsAreAddedWithoutDetails)
{
    gps::LineAccount total;
    gps::LineAccount lines;
    addAccepted(lines);
    addSkipped(lines, 2, SkipReason::kNoName);
    total.addCounts(lines);
    total.addCounts(lines);
    EXPECT_EQ(total.seen, 4U);
    EXPECT_EQ(total.accepted, 2U);
    EXPECT_EQ(total.skippedFor(SkipReason::kNoName), 2U);
    EXPECT_TRUE(total.details.empty());
}

} // namespace
} // namespace magellan
