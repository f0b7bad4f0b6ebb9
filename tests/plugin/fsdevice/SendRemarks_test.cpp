// SPDX-License-Identifier: MIT
// Each remark and its limit, and that nothing else is remarked on.

#include "../../support/Sentence.h"
#include "Waypoint.h"

#include <plugin/fsdevice/SendRemarks.h>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

using magellan::RecordKind;
using support::waypoint;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::vector<std::string> remarksOn(RecordKind kind, gps::Array records)
{
    std::vector<std::string> remarks;
    magellan::remarkOnRecords({kind, std::move(records), "folder"}, remarks);
    return remarks;
}

std::vector<std::string> remarksOnFile(RecordKind kind, std::string_view body, int count)
{
    std::string content;
    for (int i = 0; i < count; ++i)
        content += support::sentence(body) + "\r\n";
    std::vector<std::string> remarks;
    magellan::remarkOnFile(kind, "the file", content, remarks);
    return remarks;
}

TEST(SendRemarks, NameOf20CharactersArrivesAndOneOf21IsCut)
{
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {waypoint("ABCDEFGHIJKLMNOPQRST")}), IsEmpty());
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {waypoint("ABCDEFGHIJKLMNOPQRSTU")}),
                ElementsAre(HasSubstr("\"ABCDEFGHIJKLMNOPQRST\"")));
    EXPECT_THAT(remarksOn(RecordKind::kGeocaches, {waypoint("ABCDEFGHIJKLMNOPQRSTU", "Geocache")}),
                IsEmpty());
}

std::vector<std::string> remarksOnPoints(const std::vector<magellan::RenamedPoint>& renamed)
{
    std::vector<std::string> remarks;
    magellan::remarkOnRenamedPoints(renamed, remarks);
    return remarks;
}

TEST(SendRemarks, RenamedPointsAreNamedForEachRoute)
{
    EXPECT_THAT(remarksOnPoints({}), IsEmpty());
    EXPECT_THAT(remarksOnPoints({{"R", "A", "A 1"}, {"S", "A", "A 1"}, {"S", "B", "B 1"}}),
                ElementsAre("1 point of the route \"R\" gets another name, because a different "
                            "point has it: \"A\" becomes \"A 1\".",
                            "2 points of the route \"S\" get other names, because different points "
                            "have theirs: \"A\" becomes \"A 1\", \"B\" becomes \"B 1\"."));
}

TEST(SendRemarks, OnlyThreeRenamedPointsOfARouteAreNamed)
{
    std::vector<magellan::RenamedPoint> renamed(3, {"R", "A", "A 1"});
    EXPECT_THAT(remarksOnPoints(renamed), ElementsAre(Not(HasSubstr("more"))));
    renamed.push_back({"R", "B", "B 1"});
    EXPECT_THAT(remarksOnPoints(renamed),
                ElementsAre(EndsWith("\"A\" becomes \"A 1\" and 1 more.")));
}

TEST(SendRemarks, DroppedCharactersAreRemarkedOnOnceForEachText)
{
    auto record = waypoint("A,B");
    record.set("comment", "x*y");
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {record, record}),
                ElementsAre("The name \"A,B\" of a waypoint becomes \"AB\".",
                            "The comment \"x*y\" of a waypoint becomes \"xy\"."));
}

TEST(SendRemarks, GeocacheTypeWithAPrefixLosesItsBar)
{
    auto record = waypoint("Oak", "Geocache");
    record.set("geocacheType", "Geocache|Multi");
    EXPECT_THAT(remarksOn(RecordKind::kGeocaches, {record}),
                ElementsAre(HasSubstr("\"GeocacheMulti\"")));
}

TEST(SendRemarks, SymbolWithoutAnIconIsRemarkedOnAndAnIconCodeIsNot)
{
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {waypoint("A", "Volcano")}),
                ElementsAre("The symbol \"Volcano\" has no icon and becomes \"Waypoint\"."));
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints,
                          {waypoint("A", "a"), waypoint("B", "zz"), waypoint("C", "Waypoint")}),
                IsEmpty());
}

TEST(SendRemarks, IconCodeThatDamagesItsLineIsRemarkedOn)
{
    for (const std::string symbol : {"*", ",", "\r\n", "\xC3\xA9"})
        EXPECT_THAT(
            remarksOn(RecordKind::kWaypoints, {waypoint("A", symbol)}),
            ElementsAre("The symbol \"" + symbol +
                        "\" is written as it is and would damage its line: choose another one."));
}

TEST(SendRemarks, SkippedRecordsAreRemarkedOn)
{
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {gps::Dictionary{{"point", gps::GPSPoint{}}}}),
                ElementsAre("A waypoint without a name is skipped."));
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {gps::Dictionary{{"name", "A"}}}),
                ElementsAre(HasSubstr("no position")));
    EXPECT_THAT(
        remarksOn(RecordKind::kRoutes, {gps::Dictionary{{"points", gps::Array{waypoint("A")}}}}),
        ElementsAre(HasSubstr("route without a name")));
    EXPECT_THAT(remarksOn(RecordKind::kGeocaches, {gps::Dictionary{{"point", gps::GPSPoint{}}}}),
                ElementsAre("A geocache without an identifier or a name is skipped."));
    EXPECT_THAT(remarksOn(RecordKind::kGeocaches,
                          {gps::Dictionary{{"cacheID", 4711}, {"point", gps::GPSPoint{}}}}),
                IsEmpty());
}

TEST(SendRemarks, NameThatIsNotATextCountsAsMissing)
{
    auto record = waypoint("A");
    record.set("name", 7);
    EXPECT_THAT(remarksOn(RecordKind::kWaypoints, {record}),
                ElementsAre("A waypoint without a name is skipped."));
    EXPECT_THAT(remarksOn(RecordKind::kRoutes, {record}),
                ElementsAre(HasSubstr("route without a name")));
}

TEST(SendRemarks, TrackPointsWithoutAPositionAreCounted)
{
    const gps::Dictionary beyond{{"point", gps::GPSPoint{90.5, 0, 0, 0, 0}}};
    const gps::Dictionary good{{"point", gps::GPSPoint{90, 0, 0, 0, 0}}};
    EXPECT_THAT(
        remarksOn(RecordKind::kTracks,
                  {gps::Dictionary{{"points", gps::Array{good, beyond, gps::Dictionary{}}}}}),
        ElementsAre(HasSubstr("loses 2 points")));
    EXPECT_THAT(remarksOn(RecordKind::kTracks, {gps::Dictionary{{"points", gps::Array{good}}}}),
                IsEmpty());
}

TEST(SendRemarks, FileOf200GeocachesIsReadWholeAndOneOf201IsNot)
{
    constexpr char kBody[] = "PMGNGEO,4630.00000,N,00715.00000,E,0000400,M,Oak,,,,,,,,";
    EXPECT_THAT(remarksOnFile(RecordKind::kGeocaches, kBody, 200), IsEmpty());
    EXPECT_THAT(remarksOnFile(RecordKind::kGeocaches, kBody, 201),
                ElementsAre(HasSubstr("201 geocaches")));
}

TEST(SendRemarks, FileOf200WaypointsWithCommentsIsKeptAndThoseWithoutDoNotCount)
{
    constexpr char kCommented[] = "PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,A,note,a";
    EXPECT_THAT(remarksOnFile(RecordKind::kWaypoints, kCommented, 200), IsEmpty());
    EXPECT_THAT(remarksOnFile(RecordKind::kWaypoints, kCommented, 201),
                ElementsAre(HasSubstr("201 waypoints with comments")));
    EXPECT_THAT(remarksOnFile(RecordKind::kWaypoints,
                              "PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,A,,a", 300),
                IsEmpty());
}

} // namespace
