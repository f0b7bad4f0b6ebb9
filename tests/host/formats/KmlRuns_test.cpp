// SPDX-License-Identifier: MIT

#include "host/formats/KmlRuns.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string textOf(const std::vector<host::KmlRun>& runs)
{
    std::string text;
    for (const auto& run : runs)
        host::appendKmlRun(text, run);
    return text;
}

TEST(KmlRuns, EachKindOfRunIsReadBack)
{
    const std::string text = "new more new-first new-last more-first more-last more-first-last";
    const auto runs = host::readKmlRuns(text);
    ASSERT_TRUE(runs);
    EXPECT_EQ(runs->size(), 7U);
    EXPECT_EQ(textOf(*runs), text);
}

TEST(KmlRuns, AnyWhiteSpaceSeparates)
{
    const auto runs = host::readKmlRuns(" new\n\tmore ");
    ASSERT_TRUE(runs);
    EXPECT_EQ(textOf(*runs), "new more");
    EXPECT_TRUE(host::readKmlRuns(" ")->empty());
}

TEST(KmlRuns, OtherWordsAreNotRuns)
{
    for (const char* const text :
         {"newer", "new,more", "New", "new-last-first", "new-", "-first", "new 1"})
        EXPECT_FALSE(host::readKmlRuns(text)) << text;
}

} // namespace
