// SPDX-License-Identifier: MIT
// Lines end at CR LF only.

#include <plugin/common/Lines.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace magellan {
namespace {

using testing::ElementsAre;

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    forEachLine(text, [&lines](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

TEST(Lines, AreCutAtCarriageReturnLineFeed)
{
    EXPECT_THAT(linesOf("a\r\nb\r\nc"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(linesOf("a\r\n\r\nb"), ElementsAre("a", "", "b"));
}

TEST(Lines, AreSplitNowhereElse)
{
    EXPECT_THAT(linesOf("a\nb\rc\n\rd"), ElementsAre("a\nb\rc\n\rd"));
    EXPECT_THAT(linesOf("a\r\r\n\nb"), ElementsAre("a\r", "\nb"));
    EXPECT_THAT(linesOf(std::string_view{"a\0b", 3}), ElementsAre(std::string("a\0b", 3)));
}

TEST(Lines, ATextThatEndsInALineEndHasAnEmptyLastLine)
{
    EXPECT_THAT(linesOf("a\r\n"), ElementsAre("a", ""));
    EXPECT_THAT(linesOf("\r\n"), ElementsAre("", ""));
    EXPECT_THAT(linesOf("a\r"), ElementsAre("a\r"));
}

TEST(Lines, AnEmptyTextIsOneEmptyLine)
{
    EXPECT_THAT(linesOf(""), ElementsAre(""));
}

TEST(Lines, AreViewsIntoTheText)
{
    const std::string text = "a\r\nb";
    const char* last = nullptr;
    forEachLine(text, [&last](std::string_view line) { last = line.data(); });
    EXPECT_EQ(last, text.data() + 3);
}

} // namespace
} // namespace magellan
