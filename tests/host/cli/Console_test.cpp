// SPDX-License-Identifier: MIT

#include "host/cli/Console.h"

#include <gtest/gtest.h>

namespace {

TEST(Console, ErrorIsItsDescriptionItsSuggestionAndItsPath)
{
    EXPECT_EQ(host::sentencesOf({"d", 1, {{gps::kErrorDescriptionKey, "It broke"}}}), "It broke.");
    EXPECT_EQ(host::sentencesOf({"d", 1, {{gps::kErrorDescriptionKey, "It broke."}, {gps::kErrorSuggestionKey, "Mend it!"}}}),
              "It broke. Mend it!");
    EXPECT_EQ(
        host::sentencesOf(
            {"d",
             1,
             {{gps::kErrorDescriptionKey, "It broke"}, {gps::kErrorSuggestionKey, "Mend it"}, {gps::kErrorPathKey, "/a/b"}}}),
        "It broke. Mend it. Path: /a/b");
}

TEST(Console, ErrorWithoutADescriptionIsItsCodeAndDomain)
{
    EXPECT_EQ(host::sentencesOf({"com.some", -4}), "Error -4 of the domain com.some.");
}

TEST(Console, NotesAreLeftUnsaidWhenQuiet)
{
    testing::internal::CaptureStderr();
    host::Console{true}.note("one");
    host::Console{false}.note("two\nlines");
    host::Console{true}.error("three");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "note: two\xEF\xBF\xBDlines\nmagellangps: three\n");
}

} // namespace
