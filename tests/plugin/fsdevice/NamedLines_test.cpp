// SPDX-License-Identifier: MIT

#include "../../support/Sentence.h"

#include <plugin/fsdevice/NamedLines.h>

#include <gmock/gmock.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

using magellan::NamedLines;
using support::sentence;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string pointLine(std::string_view name, std::string_view comment = "")
{
    return sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M," + std::string{name} + ',' +
                    std::string{comment} + ",b");
}

std::string linesOf(std::initializer_list<std::string> lines)
{
    std::string text;
    for (const auto& line : lines)
        text.append(line).append("\r\n");
    return text;
}

/// "NAME COMMENT" of each record.
std::vector<std::string> recordsIn(const NamedLines& lines)
{
    std::vector<std::string> texts;
    for (std::size_t index = 0; index < lines.count(); ++index) {
        gps::Dictionary record;
        lines.read(index, record);
        texts.push_back(*record.findString("name") + ' ' + *record.findString("comment"));
    }
    return texts;
}

TEST(NamedLines, ReadsTheLastRecordOfEachNameInTheOrderOfTheFirst)
{
    gps::LineAccount account;
    const auto text = linesOf({pointLine("A", "1"), pointLine("B", "2"), pointLine("A", "3")});
    EXPECT_THAT(recordsIn({magellan::kWayPointLines, text, account}), ElementsAre("A 3", "B 2"));
    EXPECT_EQ(account.seen, 3U);
    EXPECT_EQ(account.accepted, 2U);
    ASSERT_EQ(account.details.size(), 1U);
    EXPECT_EQ(account.details[0].number, 1U);
    EXPECT_EQ(account.details[0].reason, gps::SkipReason::kReplaced);
}

TEST(NamedLines, LinesWithoutANameOrOfOtherKindsAreLeftOut)
{
    gps::LineAccount account;
    const auto text = linesOf({sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400"),
                               sentence("PMGNTRK,1"), "noise", pointLine("A")});
    EXPECT_THAT(recordsIn({magellan::kWayPointLines, text, account}), ElementsAre("A "));
    EXPECT_EQ(account.skippedFor(gps::SkipReason::kNoName), 1U);
    EXPECT_EQ(account.skippedFor(gps::SkipReason::kOtherKind), 1U);
    EXPECT_EQ(account.skippedFor(gps::SkipReason::kNotASentence), 1U);
}

TEST(NamedLines, AnEmptyTextHasNone)
{
    gps::LineAccount account;
    EXPECT_THAT(recordsIn({magellan::kGeoCacheLines, "", account}), IsEmpty());
}

TEST(NamedLines, ATruncatedSentenceThrowsAndIsCounted)
{
    gps::LineAccount account;
    const auto text = linesOf({pointLine("A"), sentence("PMGNWPL,4630.00000,N")});
    EXPECT_THROW((NamedLines{magellan::kWayPointLines, text, account}), gps::RangeError);
    EXPECT_EQ(account.skippedFor(gps::SkipReason::kTooFewFields), 1U);
}

TEST(NamedLines, ARecordHasItsPoint)
{
    gps::LineAccount account;
    const auto text = pointLine("A");
    const NamedLines lines{magellan::kWayPointLines, text, account};
    gps::Dictionary record;
    lines.read(0, record);
    EXPECT_EQ(*gps::findPoint(record), (gps::GPSPoint{46.5, 7.25, 400, 0, 0}));
}

TEST(NamedLines, AppendsTheLastLineOfANameIfItIsAsWritten)
{
    gps::LineAccount account;
    const auto last = pointLine("A", "j");
    ASSERT_THAT(last, testing::EndsWith("A"));
    auto lowerCase = last;
    lowerCase.back() = 'a';
    const auto text = linesOf({pointLine("A", "1"), pointLine("B", "_"), lowerCase});
    const NamedLines lines{magellan::kWayPointLines, text, account};
    ASSERT_EQ(lines.count(), 2U);
    EXPECT_EQ(lines.nameOf(0), "A");
    EXPECT_EQ(lines.nameOf(1), "B");
    std::string out = "before ";
    EXPECT_FALSE(lines.appendAsWritten(1, out));
    EXPECT_EQ(out, "before ");
    EXPECT_TRUE(lines.appendAsWritten(0, out));
    EXPECT_EQ(out, "before " + last + "\r\n");
}

TEST(NamedLines, FindsTheIndexOfANameThatALineHasAndOfNoOther)
{
    gps::LineAccount account;
    const auto text = linesOf({pointLine("A"), pointLine("B")});
    const NamedLines lines{magellan::kWayPointLines, text, account};
    EXPECT_EQ(lines.find("A"), 0U);
    EXPECT_EQ(lines.find("B"), 1U);
    EXPECT_EQ(lines.find("C"), std::nullopt);
    EXPECT_EQ(lines.find(""), std::nullopt);
}

} // namespace
