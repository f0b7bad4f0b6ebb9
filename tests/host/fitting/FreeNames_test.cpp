// SPDX-License-Identifier: MIT

#include "host/fitting/FreeNames.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>

namespace {

using host::FreeNames;
using support::kUnit;

host::StoredRecord storedAt(double latitude, double longitude, std::size_t details = 0)
{
    return {host::DevicePosition::of({latitude, longitude, 0, 0, 0}), details};
}

const auto kHere = storedAt(46.5, 7.25);
const auto kThere = storedAt(-10, 20);

TEST(FreeNames, FreeNameIsUsedUnchanged)
{
    FreeNames names{20};
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp");
    EXPECT_EQ(names.claimLike("12345678901234567890", kHere), "12345678901234567890");
}

TEST(FreeNames, LongNameIsCutAndHasNoSpaceAtItsEnd)
{
    FreeNames names{20};
    EXPECT_EQ(names.claimLike("123456789012345678901", kHere), "12345678901234567890");
    EXPECT_EQ(names.claimLike("A name of some words here", kHere), "A name of some words");
    EXPECT_EQ(names.claimLike("A name of some more words", kHere), "A name of some more");
}

TEST(FreeNames, UsedNameGetsANumberWithinTheLimit)
{
    FreeNames names{10};
    EXPECT_TRUE(names.claim("Camp"));
    EXPECT_FALSE(names.claim("Camp"));
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 2");
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 3");
    EXPECT_EQ(names.claimLike("Long name 1", kHere), "Long name");
    EXPECT_EQ(names.claimLike("Long name 2", kHere), "Long nam 2");
    EXPECT_EQ(names.claimLike("Long name 3", kHere), "Long nam 3");
}

TEST(FreeNames, UsedNumbersAreSkipped)
{
    FreeNames names{20};
    EXPECT_TRUE(names.claim("Camp"));
    EXPECT_TRUE(names.claim("Camp 2"));
    names.addOnDevice("Camp 3", kThere);
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 4");
}

TEST(FreeNames, NumbersGrowADigitWhenTheShorterOnesAreUsed)
{
    FreeNames names{6};
    std::unordered_set<std::string> given;
    for (int i = 0; i < 200; ++i) {
        const auto name = names.claimLike("abcdefgh", kHere);
        EXPECT_LE(name.size(), 6U);
        EXPECT_TRUE(given.insert(name).second) << name;
    }
    EXPECT_TRUE(given.contains("abcd 9"));
    EXPECT_TRUE(given.contains("abc 10"));
    EXPECT_TRUE(given.contains("ab 100"));
}

TEST(FreeNames, LimitWithoutRoomForANumberRepeatsTheName)
{
    FreeNames names{2};
    EXPECT_EQ(names.claimLike("abc", kHere), "ab");
    EXPECT_EQ(names.claimLike("abc", kHere), "ab");
    FreeNames three{3};
    EXPECT_EQ(three.claimLike("abc", kHere), "abc");
    EXPECT_EQ(three.claimLike("abc", kHere), "a 2");
}

TEST(FreeNames, NameThatTheDeviceHoldsElsewhereIsNotHandedOut)
{
    FreeNames names{20};
    names.addOnDevice("Camp", kThere);
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 2");
}

TEST(FreeNames, ExactNameMayBeOneOnTheDevice)
{
    FreeNames names{20};
    names.addOnDevice("Camp", kThere);
    EXPECT_TRUE(names.claim("Camp"));
}

TEST(FreeNames, RecordSentBeforeGetsItsNameAgain)
{
    FreeNames names{10};
    names.addOnDevice("Long name", kThere);
    names.addOnDevice("Long nam 2", kThere);
    names.addOnDevice("Long nam 3", kHere);
    names.addOnDevice("Long na 12", storedAt(1, 1));
    names.addOnDevice("Other", kHere);
    EXPECT_EQ(names.claimLike("Long name x", storedAt(1, 1)), "Long na 12");
    EXPECT_EQ(names.claimLike("Long name y", kHere), "Long nam 3");
    EXPECT_EQ(names.claimLike("Long name z", kThere), "Long name");
    EXPECT_EQ(names.claimLike("Long name z", kThere), "Long nam 2") << "each is handed out once";
    EXPECT_EQ(names.claimLike("Long name z", kThere), "Long nam 4");
}

TEST(FreeNames, NumberOfAnotherFormIsPartOfTheName)
{
    for (const std::string name :
         {"Camp 02", "Camp2", "Camp 1234567890", "Camp 0", "Camp x2", " 2", "2"}) {
        FreeNames names{20};
        names.addOnDevice(name, kHere);
        EXPECT_EQ(names.claimLike("Camp", kHere), "Camp") << name;
    }
}

TEST(FreeNames, PositionIsRecognisedAfterTheDeviceRoundedIt)
{
    for (const double degrees : {0.0, 46.5, -46.5, 7.123456789, 179.99999, 0.00001, 89.999995}) {
        for (const double off : {-1e-7, 0.0, 1e-7}) {
            FreeNames names{20};
            names.addOnDevice("Camp", storedAt(degrees / 2 + off, degrees - off));
            EXPECT_EQ(names.claimLike("Camp", storedAt(degrees / 2, degrees)), "Camp")
                << degrees << ' ' << off;
        }
    }
    FreeNames names{20};
    names.addOnDevice("Hut", storedAt(46.5 + 2 * kUnit, 7.25));
    EXPECT_EQ(names.claimLike("Hut", kHere), "Hut 2") << "two units away is another position";
    names.addOnDevice("Camp", storedAt(46.5001, 7.25));
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 2") << "eleven metres away is another position";
}

TEST(FreeNames, NameWithoutAValidPositionIsNotHandedOutAgain)
{
    const auto kNowhere = storedAt(96, 7);
    FreeNames names{20};
    names.addOnDevice("Camp", kNowhere);
    EXPECT_EQ(names.claimLike("Camp", kNowhere), "Camp 2");
}

TEST(FreeNames, NameOfADifferentRecordAtTheSamePositionIsNotHandedOut)
{
    FreeNames names{20};
    names.addOnDevice("Camp", storedAt(46.5, 7.25, 1));
    names.addOnDevice("Camp 2", storedAt(46.5, 7.25, 2));
    EXPECT_EQ(names.claimLike("Camp", storedAt(46.5, 7.25, 3)), "Camp 3");
    EXPECT_EQ(names.claimLike("Camp", storedAt(46.5, 7.25, 2)), "Camp 2");
    EXPECT_EQ(names.claimLike("Camp", storedAt(46.5, 7.25, 1)), "Camp");
}

// The record would replace one of the two, which may be the one that differs.
TEST(FreeNames, NameOfTwoDifferentRecordsIsNotHandedOut)
{
    FreeNames names{20};
    names.addOnDevice("Camp", kHere);
    names.addOnDevice("Camp", kThere);
    names.addOnDevice("Hut", kHere);
    names.addOnDevice("Hut", kHere);
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp 2");
    EXPECT_EQ(names.claimLike("Camp", kThere), "Camp 3");
    EXPECT_EQ(names.claimLike("Hut", kHere), "Hut") << "of two that are the same it is";
}

TEST(FreeNames, RecordGetsTheNameOfTheSameRoutePointUnlessADifferentRecordHasIt)
{
    FreeNames names{20};
    names.addPointOnDevice("Camp", kHere);
    names.addPointOnDevice("Camp", kThere);
    names.addPointOnDevice("Hut", kHere);
    names.addOnDevice("Hut", kThere);
    EXPECT_EQ(names.claimLike("Camp", kHere), "Camp");
    EXPECT_EQ(names.claimLike("Hut", kHere), "Hut 2");
    const auto any = [](const std::string&) { return true; };
    EXPECT_EQ(names.claimPointLike("Hut", kHere, any), "Hut") << "nobody has taken it";
    EXPECT_EQ(names.claimPointLike("Camp", kHere, any), "Camp 2");
}

TEST(FreeNames, RoutePointGetsOnlyANameThatItsRuleAllows)
{
    FreeNames names{20};
    names.addPointOnDevice("Stop", kHere);
    names.addOnDevice("Stop 2", kHere);
    EXPECT_EQ(
        names.claimPointLike("Stop", kHere, [](const std::string& name) { return name != "Stop"; }),
        "Stop 2");
    EXPECT_EQ(names.claimPointLike("Stop", kHere, [](const std::string&) { return false; }),
              "Stop 3");
}

TEST(FreeNames, ManyNamesTakeNoQuadraticTime)
{
    constexpr int kMany = MAGELLAN_SANITIZED ? 10000 : 100000;
    FreeNames names{20};
    for (int i = 0; i < kMany; ++i)
        names.addOnDevice("Camp " + std::to_string(i), kThere);
    std::unordered_set<std::string> given;
    for (int i = 0; i < kMany; ++i)
        given.insert(names.claimLike("Camp", kHere));
    // Names that differ only in the part that a number replaces.
    for (int i = 0; i < kMany; ++i)
        given.insert(
            names.claimLike("A common front " + std::to_string(kMany + i % (kMany / 2)), kHere));
    for (int i = 0; i < kMany; ++i)
        given.insert(names.claimLike("Camp", kThere));
    EXPECT_EQ(given.size(), 3U * kMany);
}

} // namespace
