// SPDX-License-Identifier: MIT

#include "host/base/Sentences.h"

#include <gtest/gtest.h>

namespace {

TEST(Sentences, ErrorIsItsDescriptionItsSuggestionAndItsPath)
{
    EXPECT_EQ(host::sentencesOf({"d", 1, {{gps::kErrorDescriptionKey, "It broke"}}}), "It broke.");
    EXPECT_EQ(host::sentencesOf({"d",
                                 1,
                                 {{gps::kErrorDescriptionKey, "It broke."},
                                  {gps::kErrorSuggestionKey, "Fix it!"}}}),
              "It broke. Fix it!");
    EXPECT_EQ(host::sentencesOf({"d",
                                 1,
                                 {{gps::kErrorDescriptionKey, "It broke"},
                                  {gps::kErrorSuggestionKey, "Fix it"},
                                  {gps::kErrorPathKey, "/a/b"}}}),
              "It broke. Fix it. Path: /a/b");
}

TEST(Sentences, ErrorWithoutADescriptionIsItsCodeAndDomain)
{
    EXPECT_EQ(host::sentencesOf({"com.some", -4}), "Error -4 of the domain com.some.");
}

} // namespace
