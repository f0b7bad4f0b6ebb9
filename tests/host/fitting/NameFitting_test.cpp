// SPDX-License-Identifier: MIT

#include "host/fitting/NameFitting.h"

#include "host/RecordSources.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <unordered_set>

namespace {

using gps::Array;
using gps::Dictionary;
using gps::GPSPoint;
using testing::ElementsAre;

const host::TextRules& rules()
{
    static const host::TextRules rules{
        gps::CharacterSet{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .0123456789-/'"},
        20};
    return rules;
}

std::vector<host::TextChange> fitNames(Dictionary& data, const Dictionary& onDevice = {})
{
    return host::fitNames(data, support::recordsOf(onDevice), rules());
}

Dictionary at(double latitude, std::string_view name, Dictionary record = {})
{
    record.set("name", name);
    record.set("point", GPSPoint{latitude, 7, 0, 0, 0});
    return record;
}

Dictionary routeOf(std::string_view name, std::initializer_list<Dictionary> points)
{
    Array list;
    for (const auto& point : points)
        list.emplace_back(point);
    return {{"name", name}, {"points", std::move(list)}};
}

Dictionary dataOf(std::initializer_list<Dictionary> waypoints,
                  std::initializer_list<Dictionary> routes = {})
{
    Array waypointList;
    for (const auto& record : waypoints)
        waypointList.emplace_back(record);
    Array routeList;
    for (const auto& record : routes)
        routeList.emplace_back(record);
    return {{"waypoint", std::move(waypointList)}, {"route", std::move(routeList)}};
}

std::vector<std::string> namesIn(const Dictionary& data, std::string_view key)
{
    std::vector<std::string> names;
    for (const auto& value : *data.find(key)->as<Array>()) {
        const auto* const name = value.as<Dictionary>()->findString("name");
        names.push_back(name != nullptr ? *name : "(no name)");
    }
    return names;
}

std::vector<std::string> waypointNames(Dictionary data, const Dictionary& onDevice = {})
{
    (void)fitNames(data, onDevice);
    return namesIn(data, "waypoint");
}

std::string textOf(const host::TextChange& change)
{
    return std::string{change.kind} + ' ' + std::string{change.key} + ": " + change.before + " > " +
           change.after + " - " + change.dropped;
}

std::vector<std::string> changesOf(Dictionary data, const Dictionary& onDevice = {})
{
    std::vector<std::string> texts;
    for (const auto& change : fitNames(data, onDevice))
        texts.push_back(textOf(change));
    return texts;
}

TEST(NameFitting, GoodDataIsUnchanged)
{
    const auto good = dataOf(
        {at(1, "Camp", {{"comment", "by the lake"}, {"symbol", "S\xC3\xBC\xC3\x9F,"}}),
         at(2, "12345678901234567890"), at(3, "GC1", {{"symbol", "Geocache"}, {"terrain", "1.5"}})},
        {routeOf("Loop", {at(1, "Camp"), at(2, "12345678901234567890")})});
    auto data = good;
    EXPECT_THAT(fitNames(data), testing::IsEmpty());
    EXPECT_EQ(data, good);
}

TEST(NameFitting, ListsOfOtherTypesAreIgnored)
{
    Dictionary data{{"waypoint", "no list"},
                    {"route", Array{"no record", 7}},
                    {"track", Array{Dictionary{{"name", "\xC3\xA9"}}}}};
    const auto before = data;
    EXPECT_THAT(fitNames(data, data), testing::IsEmpty());
    EXPECT_EQ(data, before) << "tracks are not changed";
}

TEST(NameFitting, TextsAreMadePlainAndReported)
{
    auto data = dataOf(
        {at(1, "Caf\xC3\xA9", {{"comment", "a,b"}, {"symbol", "Caf\xC3\xA9"}}),
         at(2, "GC1",
            {{"symbol", "Geocache"}, {"geocacheOwner", "J\xC3\xBCrg"}, {"geocacheHint", "*"}})},
        {routeOf("Tour \xC3\xA0 v\xC3\xA9lo",
                 {at(1, "Caf\xC3\xA9", {{"comment", "c\xC3\xB4te"}})})});
    EXPECT_THAT(
        changesOf(data),
        ElementsAre("waypoint comment: a,b > ab - ,", "route point comment: c\xC3\xB4te > cote - ",
                    "geocache geocacheOwner: J\xC3\xBCrg > Jurg - ",
                    "geocache geocacheHint: * >  - *", "waypoint name: Caf\xC3\xA9 > Cafe - ",
                    "route name: Tour \xC3\xA0 v\xC3\xA9lo > Tour a velo - "));
    (void)fitNames(data);
    EXPECT_EQ(
        data,
        dataOf({at(1, "Cafe", {{"comment", "ab"}, {"symbol", "Caf\xC3\xA9"}}),
                at(2, "GC1",
                   {{"symbol", "Geocache"}, {"geocacheOwner", "Jurg"}, {"geocacheHint", ""}})},
               {routeOf("Tour a velo", {at(1, "Cafe", {{"comment", "cote"}})})}));
}

TEST(NameFitting, LongNamesStayDifferent)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "A campground by the lake, north"),
                                      at(2, "A campground by the lake, south"),
                                      at(3, "A campground by the lake")})),
                ElementsAre("A campground by the", "A campground by th 2", "A campground by th 3"));
}

TEST(NameFitting, GoodNameIsNotGivenToARecordThatNeedsANewOne)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "Caf\xC3\xA9"), at(2, "Cafe 2"), at(3, "Cafe")})),
                ElementsAre("Cafe 3", "Cafe 2", "Cafe"));
}

TEST(NameFitting, WaypointsOfOneNameAtDifferentPositionsGetDifferentNames)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "Camp"), at(2, "Camp"), at(1, "Camp")})),
                ElementsAre("Camp", "Camp 2", "Camp"));
    EXPECT_THAT(waypointNames(dataOf({at(1, "\xC3\x89"), at(2, "\xC3\x89"), at(1, "\xC3\x89")})),
                ElementsAre("E", "E 2", "E"));
}

TEST(NameFitting, GoodNameReplacesTheSameNameOnTheDevice)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "Camp")}), dataOf({at(2, "Camp")})),
                ElementsAre("Camp"));
}

TEST(NameFitting, ChangedNameDoesNotReplaceANameOnTheDevice)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "C\xC3\xA1mp")}), dataOf({at(2, "Camp")})),
                ElementsAre("Camp 2"));
    EXPECT_THAT(
        waypointNames(dataOf({at(1, "C\xC3\xA1mp")}), dataOf({}, {routeOf("R", {at(2, "Camp")})})),
        ElementsAre("Camp 2"))
        << "nor the name of a route point";
}

TEST(NameFitting, RecordWithoutANameGetsOne)
{
    auto data = dataOf(
        {at(1, ""), at(2, "\xF0\x9F\x8F\x95"), at(3, "  "), at(4, "*", {{"symbol", "Geocache"}})},
        {{{"points", Array{Dictionary{{"point", GPSPoint{1, 7, 0, 0, 0}}}, at(9, "")}}}});
    const auto changes = changesOf(data);
    (void)fitNames(data);
    EXPECT_THAT(namesIn(data, "waypoint"),
                ElementsAre("Waypoint", "Waypoint 2", "Waypoint 3", "Geocache"));
    EXPECT_THAT(namesIn(data, "route"), ElementsAre("Route"));
    EXPECT_THAT(namesIn(*data.find("route")->as<Array>()->front().as<Dictionary>(), "points"),
                ElementsAre("Waypoint", "Waypoint 4"));
    EXPECT_EQ(changes.front(), "waypoint name:  > Waypoint - ");
    EXPECT_EQ(changes[1], "waypoint name: \xF0\x9F\x8F\x95 > Waypoint 2 - \xF0\x9F\x8F\x95");
}

TEST(NameFitting, RoutePointsGetTheNamesOfTheirWaypoints)
{
    auto data =
        dataOf({at(1, "A campground by the lake, north"), at(2, "A campground by the lake, south"),
                at(3, "Camp"), at(4, "Camp")},
               {routeOf("R", {at(2, "A campground by the lake, south"),
                              at(1.5, "A campground by the lake, north"), at(4, "Camp"),
                              at(9, "Camp"), at(5, "A campground by the lake, east")}),
                routeOf("S", {at(8, "A campground by the lake, east"), at(7, "Only here")})});
    (void)fitNames(data);
    const auto pointsOf = [&](std::size_t route) {
        return namesIn(*(*data.find("route")->as<Array>())[route].as<Dictionary>(), "points");
    };
    EXPECT_THAT(pointsOf(0), ElementsAre("A campground by th 2", "A campground by the", "Camp 2",
                                         "Camp", "A campground by th 3"));
    EXPECT_THAT(pointsOf(1), ElementsAre("A campground by th 4", "Only here"));
}

// The names of all route points, in order.
std::vector<std::string> pointNames(Dictionary data, const Dictionary& onDevice = {})
{
    (void)fitNames(data, onDevice);
    std::vector<std::string> names;
    for (const auto& route : *data.find("route")->as<Array>()) {
        const auto more = namesIn(*route.as<Dictionary>(), "points");
        names.insert(names.end(), more.begin(), more.end());
    }
    return names;
}

TEST(NameFitting, RoutePointsOfOneNameAtDifferentPositionsGetDifferentNames)
{
    const auto data = dataOf({}, {routeOf("R", {at(1, "Stop"), at(2, "Stop")}),
                                  routeOf("S", {at(3, "Stop"), at(1, "Stop")}),
                                  routeOf("T", {at(2, "Stop"), at(1 + 1e-7, "Stop")})});
    EXPECT_THAT(pointNames(data),
                ElementsAre("Stop", "Stop 2", "Stop 3", "Stop", "Stop 2", "Stop"));
    EXPECT_THAT(changesOf(data), ElementsAre("route point name: Stop > Stop 2 - ",
                                             "route point name: Stop > Stop 3 - "));
}

Dictionary noted(const char* comment)
{
    return {{"comment", comment}};
}

// A driver would number the second one, and the number can be the name of another point.
TEST(NameFitting, RoutePointsOfOneNameThatAreStoredDifferentlyGetDifferentNames)
{
    auto higher = at(1, "Stop");
    higher.set("point", GPSPoint{1, 7, 12, 0, 0});
    auto aLittleHigher = at(1, "Stop");
    aLittleHigher.set("point", GPSPoint{1, 7, 0.9, 5, 0});
    const auto data =
        dataOf({}, {routeOf("R", {at(1, "Stop", noted("one")), at(1, "Stop", noted("two")),
                                  at(1, "Stop", noted("one")), at(1, "Stop", noted("two"))}),
                    routeOf("S", {at(1, "Stop"), higher, at(1, "Stop", {{"symbol", "Tent"}}),
                                  aLittleHigher, higher})});
    EXPECT_THAT(pointNames(data), ElementsAre("Stop", "Stop 2", "Stop", "Stop 2", "Stop 3",
                                              "Stop 4", "Stop 5", "Stop 3", "Stop 4"));
}

TEST(NameFitting, RoutePointThatIsStoredUnlikeTheDevicesGetsANameThatIsFree)
{
    const auto onDevice =
        dataOf({}, {routeOf("Old", {at(1, "Stop", noted("one")), at(2, "Stop 1")})});
    EXPECT_THAT(pointNames(dataOf({}, {routeOf("R", {at(1, "Stop", noted("two")),
                                                     at(1, "Stop", noted("one"))})}),
                           onDevice),
                ElementsAre("Stop 2", "Stop"));
}

TEST(NameFitting, RoutePointsWithOtherDetailsGetTheirNamesAgain)
{
    const auto onDevice = dataOf({}, {routeOf("Old", {at(1, "Stop", noted("one"))})});
    const auto original =
        dataOf({}, {routeOf("R", {at(1, "Stop", noted("three")), at(1, "Stop", noted("two"))}),
                    routeOf("S", {at(1, "Stop", noted("one"))})});
    auto sent = original;
    (void)fitNames(sent, onDevice);
    auto again = original;
    (void)fitNames(again, sent);
    EXPECT_EQ(again, sent);
    auto turned = dataOf({}, {routeOf("R", {at(1, "Stop", noted("two"))})});
    EXPECT_THAT(pointNames(turned, sent), ElementsAre("Stop 3"));
}

TEST(NameFitting, RoutePointAtItsWaypointsPositionComesFirst)
{
    EXPECT_THAT(pointNames(dataOf({at(1, "C\xC3\xA1mp")},
                                  {routeOf("R", {at(2, "C\xC3\xA1mp"), at(1, "C\xC3\xA1mp")})})),
                ElementsAre("Camp 2", "Camp"));
    EXPECT_THAT(pointNames(dataOf({at(1, "Camp")}, {routeOf("R", {at(2, "Camp"), at(1, "Camp")})})),
                ElementsAre("Camp 2", "Camp"));
}

TEST(NameFitting, RoutePointDoesNotGetTheNameOfADevicesRoutePointElsewhere)
{
    const auto onDevice =
        dataOf({at(9, "Lake")}, {routeOf("Old", {at(1, "Stop"), at(2, "Stop 2")})});
    EXPECT_THAT(pointNames(dataOf({}, {routeOf("R", {at(1, "Stop"), at(3, "Stop"), at(8, "Lake"),
                                                     at(3, "Stop")})}),
                           onDevice),
                ElementsAre("Stop", "Stop 3", "Lake", "Stop 3"));
    EXPECT_THAT(pointNames(dataOf({at(3, "Stop")}, {routeOf("R", {at(3, "Stop"), at(3, "Stop")})}),
                           onDevice),
                ElementsAre("Stop 3", "Stop 3"))
        << "although its waypoint keeps it";
}

TEST(NameFitting, RoutePointsOfASecondSendGetTheirNamesAgain)
{
    const auto original =
        dataOf({}, {routeOf("R", {at(1, "Stop"), at(2, "Stop")}), routeOf("S", {at(3, "Stop")})});
    auto sent = original;
    (void)fitNames(sent);
    auto again = original;
    (void)fitNames(again, sent);
    EXPECT_EQ(again, sent);
}

TEST(NameFitting, SharedNameIsReportedOnce)
{
    EXPECT_THAT(changesOf(dataOf({}, {routeOf("R", {at(1, "\xC3\x89"), at(1, "\xC3\x89")}),
                                      routeOf("S", {at(1, "\xC3\x89")})})),
                ElementsAre("route point name: \xC3\x89 > E - "));
}

TEST(NameFitting, GeocachesNameIsNotCut)
{
    const std::string longName = "A geocache with a name that is long";
    EXPECT_THAT(waypointNames(dataOf({at(1, longName, {{"symbol", "Geocache Found"}}),
                                      at(2, "\xC3\x89" + longName, {{"symbol", "Geocache"}})})),
                ElementsAre(longName, "E" + longName));
}

TEST(NameFitting, GeocachesOfOneNameGetDifferentNamesUnlessTheyAreEqual)
{
    const Dictionary cache{{"symbol", "Geocache"}};
    const Dictionary found{{"symbol", "Geocache Found"}, {"dateFound", "010208"}};
    EXPECT_THAT(waypointNames(dataOf({at(1, "GC1", cache), at(2, "GC1", cache), at(3, "GC1"),
                                      at(1, "GC1", found), at(1, "GC1", cache)})),
                ElementsAre("GC1", "GC1 2", "GC1", "GC1 3", "GC1"))
        << "and a waypoint of that name is something else";
    EXPECT_THAT(waypointNames(dataOf({at(1, "\xC3\x89", cache), at(2, "\xC3\x89", cache),
                                      at(3, "\xC3\x88", cache)})),
                ElementsAre("E", "E 2", "E 3"));
}

Dictionary higher(Dictionary record, double metres)
{
    auto point = *gps::findPoint(record);
    point.altitude = metres;
    record.set("point", point);
    return record;
}

TEST(NameFitting, WaypointsOfOneNameThatAreStoredDifferentlyGetDifferentNames)
{
    EXPECT_THAT(waypointNames(dataOf({at(1, "Camp"), at(1, "Camp", {{"comment", "by the lake"}}),
                                      at(1, "Camp", {{"symbol", "Tent"}}), higher(at(1, "Camp"), 1),
                                      higher(at(1, "Camp"), 0.9),
                                      at(1, "Camp", {{"comment", "by the lake"}})})),
                ElementsAre("Camp", "Camp 2", "Camp 3", "Camp 4", "Camp", "Camp 2"));
}

TEST(NameFitting, RoutesThatDifferInAnyPointOrTheirCommentGetDifferentNames)
{
    auto noted = routeOf("R", {at(1, "A"), at(2, "B")});
    noted.set("comment", "by the lake");
    auto data =
        dataOf({}, {routeOf("R", {at(1, "A"), at(2, "B")}), routeOf("R", {at(1, "A"), at(2, "C")}),
                    noted, routeOf("R", {at(1, "A"), higher(at(3, "D"), 5)}),
                    routeOf("R", {at(1, "A"), higher(at(3, "D"), 5)}),
                    routeOf("R", {at(2, "B"), at(1, "A")}), routeOf("R", {at(1, "A")})});
    (void)fitNames(data);
    EXPECT_THAT(namesIn(data, "route"), ElementsAre("R", "R 2", "R 3", "R 4", "R 4", "R 5", "R 6"));
}

TEST(NameFitting, NumberedNameDoesNotReplaceADifferentRecordOfTheDevice)
{
    const Dictionary cache{{"symbol", "Geocache"}};
    auto hinted = cache;
    hinted.set("geocacheHint", "below the stone");
    const auto onDevice = dataOf({at(2, "Camp 2", {{"comment", "my own"}}),
                                  higher(at(3, "Camp 3"), 9), at(2, "GC1 2", hinted)},
                                 {routeOf("Tour 2", {at(1, "A"), at(9, "Z")})});
    auto data = dataOf({at(1, "Camp"), at(2, "Camp"), at(3, "Camp"), at(1, "GC1", cache),
                        at(2, "GC1", cache), higher(at(3, "Camp"), 9)},
                       {routeOf("Tour", {at(4, "D")}), routeOf("Tour", {at(1, "A"), at(2, "B")}),
                        routeOf("Tour", {at(1, "A"), at(9, "Z")})});
    (void)fitNames(data, onDevice);
    EXPECT_THAT(namesIn(data, "waypoint"),
                ElementsAre("Camp", "Camp 4", "Camp 5", "GC1", "GC1 3", "Camp 3"));
    EXPECT_THAT(namesIn(data, "route"), ElementsAre("Tour", "Tour 3", "Tour 2"));
}

TEST(NameFitting, RoutesThatDifferInALaterPointGetTheirNamesAgain)
{
    auto sent =
        dataOf({}, {routeOf("", {at(1, "A"), at(2, "B")}), routeOf("", {at(1, "A"), at(3, "C")}),
                    routeOf("", {at(1, "A"), at(4, "D")})});
    (void)fitNames(sent);
    auto turned =
        dataOf({}, {routeOf("", {at(1, "A"), at(4, "D")}), routeOf("", {at(1, "A"), at(3, "C")}),
                    routeOf("", {at(1, "A"), at(2, "B")})});
    (void)fitNames(turned, sent);
    EXPECT_THAT(namesIn(turned, "route"), ElementsAre("Route 3", "Route 2", "Route"));
}

// Points of the device's files of routes that no route uses, as a source visits them.
Dictionary unused(std::initializer_list<Dictionary> points)
{
    Array list;
    for (const auto& point : points)
        list.emplace_back(point);
    Dictionary data;
    data.set(host::kRoutePointKey, std::move(list));
    return data;
}

TEST(NameFitting, RoutePointDoesNotGetTheNameOfAPointThatNoRouteUses)
{
    const auto onDevice = unused({at(1, "Stop"), at(2, "Stop 2"), at(1, "A name of 20 letters")});
    EXPECT_THAT(pointNames(dataOf({}, {routeOf("R", {at(1, "Stop"), at(3, "Stop"), at(2, "Stop"),
                                                     at(2, "A name of 20 letters")})}),
                           onDevice),
                ElementsAre("Stop", "Stop 3", "Stop 2", "A name of 20 lette 2"));
    EXPECT_THAT(waypointNames(dataOf({at(3, "St\xC3\xB6p")}), onDevice), ElementsAre("Stop 3"));
}

TEST(NameFitting, RoutesOfOneNameGetDifferentNamesUnlessTheyAreEqual)
{
    auto data =
        dataOf({}, {routeOf("R", {at(1, "A"), at(2, "B")}), routeOf("R", {at(1, "A"), at(3, "C")}),
                    routeOf("R", {at(1, "A"), at(2, "B")}),
                    routeOf("A route with a long name", {at(1, "A")})});
    (void)fitNames(data, dataOf({}, {routeOf("A route with a long", {at(9, "Z")})}));
    EXPECT_THAT(namesIn(data, "route"), ElementsAre("R", "R 2", "R", "A route with a lon 2"));
}

// What a receiver holds after a send: the same names, the positions rounded.
Dictionary heldAfter(const Dictionary& sent)
{
    auto held = sent;
    for (auto& value : *held.find("waypoint")->as<Array>()) {
        auto& record = *value.as<Dictionary>();
        auto point = *gps::findPoint(record);
        point.latitude += 8e-8;
        point.longitude -= 8e-8;
        record.set("point", point);
    }
    return held;
}

TEST(NameFitting, SecondSendGivesTheSameNames)
{
    const auto original =
        dataOf({at(1, "A campground by the lake, north"), at(2, "A campground by the lake, south"),
                at(3, "Camp"), at(4, "Camp"), at(5, "C\xC3\xA1mp"), at(6, ""),
                at(7, "A campground by the lake, east"), at(7, "A campground by the lake, west"),
                at(8, "\xC3\x89", {{"symbol", "Geocache"}})},
               {routeOf("A route with a long name, 1", {at(1, "A")}),
                routeOf("A route with a long name, 2", {at(2, "B")})});
    auto first = original;
    (void)fitNames(first);
    auto second = original;
    (void)fitNames(second, heldAfter(first));
    EXPECT_EQ(second, first);

    // Only some of them, and in another order.
    auto part = dataOf({at(5, "C\xC3\xA1mp"), at(2, "A campground by the lake, south")});
    (void)fitNames(part, heldAfter(first));
    const auto names = namesIn(first, "waypoint");
    EXPECT_THAT(namesIn(part, "waypoint"), ElementsAre(names[4], names[1]));
}

TEST(NameFitting, ManyEqualNamesTakeNoQuadraticTime)
{
    constexpr int kMany = MAGELLAN_SANITIZED ? 10000 : 100000;
    Array list;
    for (int i = 0; i < kMany; ++i)
        list.emplace_back(at(i * 1e-4, "A name that is longer than the limit"));
    Dictionary data{{"waypoint", std::move(list)}};
    EXPECT_EQ(fitNames(data).size(), std::size_t{kMany});
    const auto names = namesIn(data, "waypoint");
    EXPECT_EQ((std::unordered_set<std::string>{names.begin(), names.end()}).size(),
              std::size_t{kMany});
    const auto sent = data;
    (void)fitNames(data, sent);
    EXPECT_EQ(data, sent);
}

// How often the device is read to fit the names of some records.
int readingsFor(Dictionary data)
{
    int readings = 0;
    (void)host::fitNames(
        data, [&readings](const gps::RecordVisitor& /*visit*/) { ++readings; }, rules());
    return readings;
}

TEST(NameFitting, ReadsTheDeviceOnceAndOnlyForNamesThatChangeAndForRoutePoints)
{
    EXPECT_EQ(readingsFor({{"waypoint", Array{at(1, "A"), at(2, "B")}}}), 0);
    EXPECT_EQ(readingsFor({{"waypoint", Array{at(1, "A"), at(2, "A")}}}), 1);
    EXPECT_EQ(readingsFor({{"waypoint", Array{at(1, "A_B"), at(2, "C_D")}}}), 1);
    EXPECT_EQ(readingsFor({{"route", Array{routeOf("R", {})}}}), 0);
    EXPECT_EQ(readingsFor({{"route", Array{routeOf("R", {at(1, "A")})}}}), 1);
    EXPECT_EQ(readingsFor({{"route", Array{routeOf("R_", {at(1, "A_")})}}}), 1);
}

} // namespace
