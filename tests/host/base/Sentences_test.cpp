// SPDX-License-Identifier: MIT

#include "host/base/Sentences.h"

#include <gtest/gtest.h>

#include <cstdint>

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

TEST(Sentences, LackOfPermissionGetsAdvice)
{
    const auto sentencesFor = [](std::int32_t code) {
        return host::sentencesOf(
            {gps::kFileErrorDomain, code, {{gps::kErrorDescriptionKey, "It broke"}}});
    };
    EXPECT_EQ(sentencesFor(257), "It broke. Let your user read it, and try again.");
    EXPECT_EQ(sentencesFor(513), "It broke. Let your user write there, and try again.");
    EXPECT_EQ(sentencesFor(256), "It broke.");
    EXPECT_EQ(host::sentencesOf({"other", 257, {{gps::kErrorDescriptionKey, "It broke"}}}),
              "It broke.");
}

TEST(Sentences, ErrorWithoutADescriptionIsItsCodeAndDomain)
{
    EXPECT_EQ(host::sentencesOf({"com.some", -4}), "Error -4 of the domain com.some.");
}

} // namespace
