// SPDX-License-Identifier: MIT
// Which names count as near, with both sides of each bound.

#include "host/base/NearestName.h"

#include <gtest/gtest.h>

namespace host {
namespace {

const std::vector<std::string> kNames{"acquire", "import", "--device", "--dry-run", "-o"};

TEST(NearestName, FindsANameWithALetterLeftOutAddedOrChanged)
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
    EXPECT_EQ(nearestName("imxxxt", kNames), "");       // three
    EXPECT_EQ(nearestName("-v", kNames), "");
}

TEST(NearestName, HyphensAreNotLetters)
{
    EXPECT_EQ(nearestName("--keep", {"--help"}), ""); // two of four, not of six
    EXPECT_EQ(nearestName("--halp", {"--help"}), "--help");
    EXPECT_EQ(nearestName("--", {"--help", "-o"}), "");
}

TEST(NearestName, CaseMakesNoDifference)
{
    EXPECT_EQ(nearestName("IMPORT", kNames), "import");
    EXPECT_EQ(nearestName("acquire", {"ACQUIRE"}), "ACQUIRE");
}

TEST(NearestName, CommandTypedAsAnOptionIsFoundAndTheOtherWayRound)
{
    EXPECT_EQ(nearestName("--import", kNames), "import");
    EXPECT_EQ(nearestName("device", kNames), "--device");
}

TEST(NearestName, FindsANameByItsFirstThreeLettersButNotByTwo)
{
    EXPECT_EQ(nearestName("--kee", {"--keep-backups"}), "--keep-backups");
    EXPECT_EQ(nearestName("--ke", {"--keep-backups"}), "");
}

TEST(NearestName, IsTheNearerOfTwo)
{
    EXPECT_EQ(nearestName("--devise", {"--devices", "--device"}), "--device");
    EXPECT_EQ(nearestName("--devices", {"--device", "--devices"}), "--devices");
}

TEST(NearestName, IsEmptyWithoutNames)
{
    EXPECT_EQ(nearestName("acquire", {}), "");
}

} // namespace
} // namespace host
