// SPDX-License-Identifier: MIT

#include "host/transfer/PresentRecords.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gtest/gtest.h>

namespace {

using gps::Array;
using gps::Dictionary;
using host::RecordCounts;

Dictionary at(const char* name, double latitude, const char* symbol = "")
{
    return {{"name", name},
            {"symbol", symbol},
            {"point", gps::GPSPoint{.latitude = latitude, .longitude = 7}}};
}

Dictionary cache(const char* name, double latitude)
{
    return at(name, latitude, "Geocache");
}

Dictionary route(const char* name, double latitude)
{
    return {{"name", name}, {"points", Array{at("P", latitude), at("Q", latitude)}}};
}

class PresentRecords : public testing::Test {
protected:
    // What is left of these records.
    [[nodiscard]] Dictionary rest(Dictionary data)
    {
        removed_ = host::removePresentRecords(data, support::chosenRecordsOf(onDevice_), device_,
                                              isAnyNameOnDevice_);
        return data;
    }

    support::FakeFileDriver device_;
    bool isAnyNameOnDevice_ = false;
    Dictionary onDevice_{{"waypoint", Array{at("A", 46), at("B", 46), cache("G", 46)}},
                         {"route", Array{route("R", 46)}}};
    RecordCounts removed_;
};

TEST_F(PresentRecords, RecordsThatTheDeviceHoldsAreRemoved)
{
    EXPECT_EQ(rest({{"waypoint", Array{at("A", 46), at("C", 46), cache("G", 46)}},
                    {"route", Array{route("R", 46), route("S", 46)}}}),
              (Dictionary{{"waypoint", Array{at("C", 46)}}, {"route", Array{route("S", 46)}}}));
    EXPECT_EQ(removed_,
              (RecordCounts{.waypoints = 1, .geocaches = 1, .routes = 1, .routePoints = 2}));
}

TEST_F(PresentRecords, RecordsThatDifferAreSent)
{
    const Dictionary data{{"waypoint", Array{at("A", 47), cache("G", 47)}},
                          {"route", Array{route("R", 47)}}};
    EXPECT_EQ(rest(data), data);
    EXPECT_TRUE(removed_.isEmpty());
}

TEST_F(PresentRecords, KindWithoutRecordsLosesItsKey)
{
    EXPECT_EQ(rest({{"waypoint", Array{at("A", 46), at("A", 46)}}, {"route", Array{}}}),
              (Dictionary{{"route", Array{}}}));
    EXPECT_EQ(removed_.waypoints, 2U);
}

TEST_F(PresentRecords, RecordOfADifferentKindIsNotTheSame)
{
    const Dictionary data{{"waypoint", Array{cache("A", 46), at("G", 46)}}};
    EXPECT_EQ(rest(data), data);
}

// One of the two replaces the other, so both are needed.
TEST_F(PresentRecords, RecordsOfOneNameAreSentTogether)
{
    for (const auto& both : {Array{at("A", 46), at("A", 47)}, Array{at("A", 47), at("A", 46)}}) {
        const Dictionary data{{"waypoint", both}};
        EXPECT_EQ(rest(data), data);
    }
}

// The device has the name twice, in different files. The record may be there to replace one of
// them.
TEST_F(PresentRecords, RecordIsSentIfTheDeviceHoldsItsNameWithAnotherContentAsWell)
{
    onDevice_.findArray("waypoint")->emplace_back(at("A", 47));
    const Dictionary data{{"waypoint", Array{at("A", 46)}}};
    EXPECT_EQ(rest(data), data);
}

TEST_F(PresentRecords, ValuesThatAreNotRecordsStay)
{
    EXPECT_EQ(rest({{"waypoint", Array{1, at("A", 46), "x"}}, {"route", "none"}}),
              (Dictionary{{"waypoint", Array{1, "x"}}, {"route", "none"}}));
}

TEST_F(PresentRecords, ManyRecordsOfOneNameTakeNoQuadraticTime)
{
    constexpr std::size_t kMany = MAGELLAN_SANITIZED ? 10'000 : 100'000;
    EXPECT_EQ(rest({{"waypoint", Array(kMany, at("A", 46))}}), Dictionary{});
    EXPECT_EQ(removed_.waypoints, kMany);
}

TEST_F(PresentRecords, TellsWhetherTheDeviceHasAnyOfTheNames)
{
    onDevice_ = {{"waypoint", gps::Array{support::waypointAt(1)}}};
    auto other = support::waypointAt(2);
    (void)rest({{"waypoint", gps::Array{other}}});
    EXPECT_TRUE(isAnyNameOnDevice_);
    other.set("symbol", "Geocache");
    (void)rest({{"waypoint", gps::Array{other}}});
    EXPECT_TRUE(isAnyNameOnDevice_) << "a device may have both in one file";
    other.set("name", "B");
    (void)rest({{"waypoint", gps::Array{other}}});
    EXPECT_FALSE(isAnyNameOnDevice_);
}

TEST_F(PresentRecords, EmptyDeviceHoldsNothing)
{
    onDevice_ = {};
    const Dictionary data{{"waypoint", Array{at("A", 46)}}, {"route", Array{route("R", 46)}}};
    EXPECT_EQ(rest(data), data);
}

} // namespace
