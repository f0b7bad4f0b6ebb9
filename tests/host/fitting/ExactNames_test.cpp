// SPDX-License-Identifier: MIT

#include "host/fitting/ExactNames.h"

#include "host/RecordSources.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

gps::Dictionary at(double latitude, const char* name, const char* symbol = "Campground")
{
    return {{"name", name},
            {"comment", ""},
            {"symbol", symbol},
            {"point", gps::GPSPoint{.latitude = latitude, .longitude = 7}}};
}

gps::Dictionary waypoints(std::vector<gps::Dictionary> records)
{
    return {{"waypoint", gps::Array{records.begin(), records.end()}}};
}

gps::Dictionary route(const char* name, std::vector<gps::Dictionary> points)
{
    return {{"name", name}, {"points", gps::Array{points.begin(), points.end()}}};
}

gps::Dictionary routes(std::vector<gps::Dictionary> records)
{
    return {{"route", gps::Array{records.begin(), records.end()}}};
}

host::ExactNames store(gps::Dictionary& data, const gps::Dictionary& onDevice = {})
{
    return host::storeExactNames(
        data,
        [&onDevice](const gps::RecordVisitor& visit) { support::visitRecords(onDevice, visit); },
        {gps::CharacterSet{" 123ACHNPRSTabcdefghijklmnopqrstuvwxyz"}, 10});
}

std::string conflictOf(gps::Dictionary data, const gps::Dictionary& onDevice = {})
{
    const auto conflicts = store(data, onDevice).conflicts;
    return conflicts.empty() ? "" : conflicts.front().description;
}

TEST(ExactNames, NamesAndTextsBecomeWhatTheDeviceStores)
{
    auto camp = at(46, "Übercamp");
    camp.set("comment", "no.?");
    auto data = waypoints({camp, at(47, "Abcdefghijk"), at(48, "Abcdefghi ")});
    std::vector<std::string> changes;
    for (const auto& change : store(data).changes)
        changes.push_back(std::string{change.kind} + ' ' + std::string{change.key} + ": " +
                          change.before + " > " + change.after + " without " + change.dropped);
    EXPECT_THAT(changes, ElementsAre("waypoint comment: no.? > no without .?",
                                     "waypoint name: Übercamp > bercamp without Ü",
                                     "waypoint name: Abcdefghijk > Abcdefghij without "));
    auto stored = at(46, "bercamp");
    stored.set("comment", "no");
    EXPECT_EQ(data, waypoints({stored, at(47, "Abcdefghij"), at(48, "Abcdefghi ")}));
    EXPECT_THAT(store(data).changes, IsEmpty());
}

TEST(ExactNames, NameThatTheDeviceCannotStoreIsAConflict)
{
    const auto what = [](const char* name) { return conflictOf(waypoints({at(46, name)})); };
    EXPECT_EQ(what("Ü?"), "The device can store no character of the name \"Ü?\" of a waypoint");
    EXPECT_EQ(what("? ?"), "The device can store no character of the name \"? ?\" of a waypoint");
    EXPECT_EQ(what(""), "A waypoint has no name");
    EXPECT_EQ(what("a"), "");
    EXPECT_EQ(conflictOf(routes({route("", {})})), "A route has no name");
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "")})})), "A route point has no name");
}

TEST(ExactNames, TwoNamesThatBecomeOneAreAConflict)
{
    EXPECT_EQ(conflictOf(waypoints({at(46, "Hütte"), at(47, "Htte")})),
              "The waypoints \"Hütte\" and \"Htte\" would both be stored as \"Htte\"");
    EXPECT_EQ(conflictOf(waypoints({at(46, "Abcdefghij1"), at(46, "Abcdefghij2")})),
              "The waypoints \"Abcdefghij1\" and \"Abcdefghij2\" would both be stored as "
              "\"Abcdefghij\"");
    EXPECT_EQ(conflictOf(waypoints({at(46, "Abcdefghi1"), at(46, "Abcdefghi2")})), "")
        << "ten characters";
    EXPECT_EQ(conflictOf(waypoints({at(46, "A"), at(47, "A")})),
              "Two different waypoints have the name \"A\"");
    EXPECT_EQ(conflictOf(waypoints({at(46, "A"), at(46, "A")})), "") << "the same one twice";
    EXPECT_EQ(conflictOf(waypoints({at(46, "A"), at(47, "A", "Geocache")})), "");
    EXPECT_EQ(conflictOf(waypoints({at(46, "A", "Geocache"), at(46, "A", "Geocache")})), "");
    EXPECT_EQ(conflictOf(waypoints({at(46, "A", "Geocache"), at(47, "A", "Geocache")})),
              "Two different geocaches have the name \"A\"");
    EXPECT_EQ(conflictOf(waypoints({at(46, "A"), at(46, "A", "Tent")})),
              "Two different waypoints have the name \"A\"")
        << "another symbol";
    EXPECT_EQ(conflictOf(waypoints({at(46, "A?", "Geocache"), at(46, "A", "Geocache")})),
              "The geocaches \"A?\" and \"A\" would both be stored as \"A\"");
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "A")}), route("R", {at(46, "A")})})), "");
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "A")}), route("R", {at(47, "C")})})),
              "Two different routes have the name \"R\"");
}

TEST(ExactNames, PointOfARouteIsAConflictOnlyIfItsNameIsTooLongForANumber)
{
    const auto what = [](const char* name) {
        return conflictOf(routes({route("R", {at(46, name), at(47, name)})}));
    };
    EXPECT_EQ(what("Abcdefgh"), "");
    EXPECT_EQ(what("Abcdefghi"), "Two different route points have the name \"Abcdefghi\"");
    const auto onDevice = routes({route("S", {at(48, "Abcdefghi"), at(48, "Abcdefgh")})});
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "Abcdefgh")})}), onDevice), "");
    EXPECT_EQ(conflictOf(routes({route("R", {at(48, "Abcdefghi")})}), onDevice), "");
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "Abcdefghi")})}), onDevice),
              "The route point \"Abcdefghi\" would be stored as \"Abcdefghi\", and the device "
              "holds another one of this name");
    gps::Dictionary unused;
    unused.set(host::kRoutePointKey, gps::Array{at(48, "Abcdefghi"), at(48, "Abcdefgh")});
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "Abcdefgh"), at(48, "Abcdefghi")})}), unused),
              "");
    EXPECT_EQ(conflictOf(routes({route("R", {at(46, "Abcdefghi")})}), unused),
              "The route point \"Abcdefghi\" would be stored as \"Abcdefghi\", and the device "
              "holds another one of this name")
        << "although no route uses it";
}

TEST(ExactNames, NameThatChangesMustNotReplaceAnotherRecordOfTheDevice)
{
    const auto onDevice = waypoints({at(47, "Htte")});
    EXPECT_EQ(conflictOf(waypoints({at(46, "Hütte")}), onDevice),
              "The waypoint \"Hütte\" would be stored as \"Htte\", and the device holds another "
              "one of this name");
    EXPECT_EQ(conflictOf(waypoints({at(47, "Hütte")}), onDevice), "") << "of an earlier send";
    EXPECT_EQ(conflictOf(waypoints({at(47, "Hütte", "Tent")}), onDevice),
              "The waypoint \"Hütte\" would be stored as \"Htte\", and the device holds another "
              "one of this name")
        << "with another symbol";
    EXPECT_EQ(conflictOf(waypoints({at(46, "Htte")}), onDevice), "") << "is meant to replace it";
}

TEST(ExactNames, EachConflictHasItsAdvice)
{
    auto data = waypoints({at(46, "A"), at(47, "A"), at(48, "Ü")});
    std::vector<std::string> advice;
    for (const auto& conflict : store(data).conflicts)
        advice.push_back(conflict.advice);
    EXPECT_EQ(advice, (std::vector<std::string>{"Give them different names in the file",
                                                "Give it a name in the file"}));
}

} // namespace
