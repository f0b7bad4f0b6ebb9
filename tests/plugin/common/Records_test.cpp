// SPDX-License-Identifier: MIT
// Records that are kept by name, and routes that are reported.

#include <plugin/common/Records.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace magellan {
namespace {

using testing::ElementsAre;

constexpr gps::GPSPoint kPoint{46.5, 7.5, 500, 1, 2};

TEST(KeepByName, StoresACopyWithThePoint)
{
    gps::Dictionary extras{{"name", "A"}, {"comment", "c"}};
    gps::Dictionary records;
    keepByName(extras, kPoint, records);
    extras.clear();
    EXPECT_EQ(gps::describe(records),
              "{A = {name = \"A\", comment = \"c\", point = (46.5, 7.5, 500, 1, 2)}}");
}

TEST(KeepByName, ALaterRecordOfANameReplacesTheEarlierOneAtItsPosition)
{
    gps::Dictionary records;
    keepByName({{"name", "A"}, {"old", 1}}, kPoint, records);
    keepByName({{"name", "B"}}, {}, records);
    keepByName({{"name", "A"}}, {}, records);
    EXPECT_EQ(gps::describe(records), "{A = {name = \"A\", point = (0, 0, 0, 0, 0)}, "
                                      "B = {name = \"B\", point = (0, 0, 0, 0, 0)}}");
}

TEST(KeepByName, ARecordWithoutANameOrWithOneThatIsNotATextIsNotStored)
{
    gps::Dictionary records;
    keepByName({{"comment", "c"}}, kPoint, records);
    keepByName({{"name", 7}}, kPoint, records);
    EXPECT_TRUE(records.empty());
    keepByName({{"name", ""}}, kPoint, records);
    EXPECT_EQ(records.size(), 1U);
}

} // namespace
} // namespace magellan
