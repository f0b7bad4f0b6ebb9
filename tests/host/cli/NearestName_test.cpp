// SPDX-License-Identifier: MIT

#include "host/cli/NearestName.h"

#include <gtest/gtest.h>

namespace host {
namespace {

const std::vector<std::string> kNames{"acquire", "import", "--device", "--dry-run", "-o"};

TEST(NearestName, IsFoundForALetterLeftOutAddedOrChanged)
{
    for (const auto* word : {"aquire", "acquires", "acqvire", "acquire"})
        EXPECT_EQ(nearestName(word, kNames), "acquire") << word;
    EXPECT_EQ(nearestName("--dryrun", kNames), "--dry-run");
}

TEST(NearestName, MayBeThreeChangesAwayButNotFour)
{
    EXPECT_EQ(nearestName("acqxxxe", kNames), "acquire");
    EXPECT_EQ(nearestName("axxxxre", kNames), "");
}

TEST(NearestName, MustShareMoreThanHalfOfItsLetters)
{
    EXPECT_EQ(nearestName("impoxx", kNames), "import"); // two of six changed
    EXPECT_EQ(nearestName("impxxx", kNames), "");       // three
    EXPECT_EQ(nearestName("-v", kNames), "");
}

TEST(NearestName, OfTwoIsTheNearer)
{
    EXPECT_EQ(nearestName("--devise", {"--devices", "--device"}), "--device");
}

TEST(NearestName, IsNoneAmongNoNames)
{
    EXPECT_EQ(nearestName("acquire", {}), "");
}

} // namespace
} // namespace host
