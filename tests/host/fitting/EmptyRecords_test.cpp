// SPDX-License-Identifier: MIT

#include "host/fitting/EmptyRecords.h"

#include <gmock/gmock.h>

namespace {

gps::Dictionary record(const char* name, int points)
{
    gps::Array list;
    for (int i = 0; i < points; ++i)
        list.emplace_back(gps::Dictionary{{"point", gps::GPSPoint{.latitude = 46}}});
    return {{"name", name}, {"points", std::move(list)}};
}

std::vector<std::string> removedFrom(gps::Dictionary& data)
{
    std::vector<std::string> removed;
    for (const auto& [kind, name] : host::removeEmptyRecords(data))
        removed.push_back(std::string{kind} + ' ' + name);
    return removed;
}

TEST(EmptyRecords, RoutesAndTracksWithoutPointsAreRemoved)
{
    gps::Dictionary data{
        {"waypoint", gps::Array{gps::Dictionary{{"name", "A"}}}},
        {"route", gps::Array{record("R", 0), record("S", 1)}},
        {"track", gps::Array{record("T", 1), gps::Dictionary{{"name", "U"}}, record("V", 0)}}};
    EXPECT_THAT(removedFrom(data), testing::ElementsAre("route R", "track U", "track V"));
    EXPECT_EQ(data, (gps::Dictionary{{"waypoint", gps::Array{gps::Dictionary{{"name", "A"}}}},
                                     {"route", gps::Array{record("S", 1)}},
                                     {"track", gps::Array{record("T", 1)}}}));
    EXPECT_THAT(removedFrom(data), testing::IsEmpty());
}

TEST(EmptyRecords, ListThatBecomesEmptyIsRemovedAndOneThatWasEmptyStays)
{
    gps::Dictionary data{{"route", gps::Array{}}, {"track", gps::Array{record("", 0)}}};
    EXPECT_THAT(removedFrom(data), testing::ElementsAre("track "));
    EXPECT_EQ(data, (gps::Dictionary{{"route", gps::Array{}}}));
}

} // namespace
