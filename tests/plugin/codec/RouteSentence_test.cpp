// SPDX-License-Identifier: MIT
// Route sentences in both directions: numbering, gaps, pairs, the message and the memory limit.

#include <gps/Error.h>
#include <plugin/codec/RouteSentence.h>
#include <support/LogCapture.h>
#include <support/RangeErrorText.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using support::firstFields;
using support::sentence;
using support::withField;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kList[] = "PMGNRTE,2,1,c,5,Loop,A,a,B,b";
constexpr char kMessage[] = "PMGNRTE,2,2,m,5,Loop,nice views";

/// A route as it is read sentence by sentence, among the waypoints A to F.
struct Reading {
    bool take(std::string_view body) { return takeLine(sentence(body)); }
    bool takeLine(std::string_view line)
    {
        return interpretRouteSentence(line, points, waypoints, info);
    }

    /// The names of the points so far, joined.
    [[nodiscard]] std::string names() const
    {
        std::string joined;
        for (const auto& point : points)
            joined += *point.as<gps::Dictionary>()->findString("name");
        return joined;
    }

    gps::Array points;
    gps::Dictionary waypoints;
    gps::Dictionary info;

    Reading()
    {
        for (const auto* name : {"A", "B", "C", "D", "E", "F"})
            waypoints.set(name, gps::Dictionary{{"name", name}, {"point", gps::GPSPoint{}}});
    }
};

TEST(ReadRoute, CollectsPointsAndCommentAndEndsAtTheLastSentence)
{
    Reading route;
    EXPECT_FALSE(route.take(kList));
    EXPECT_EQ(route.names(), "AB");
    EXPECT_EQ(gps::describe(route.info), "{name = \"Loop\", lastIndex = 1}");
    EXPECT_TRUE(route.take(kMessage));
    EXPECT_EQ(route.names(), "AB");
    EXPECT_EQ(gps::describe(route.info),
              "{name = \"Loop\", lastIndex = 2, comment = \"nice views\"}");
}

TEST(ReadRoute, PointsAreTheRecordsOfTheWaypointsWithTheirPoint)
{
    Reading route;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,B,zz"));
    ASSERT_EQ(route.points.size(), 1U);
    EXPECT_EQ(route.points.front(), *route.waypoints.find("B"));
}

TEST(ReadRoute, AllMentionsOfAWaypointShareItsRecord)
{
    Reading route;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A,a,B,a,A,a"));
    EXPECT_EQ(route.names(), "ABA");
    const gps::Array& points = route.points;
    EXPECT_EQ(points[0].as<gps::Dictionary>(), points[2].as<gps::Dictionary>());
    EXPECT_EQ(points[0].as<gps::Dictionary>(),
              std::as_const(route.waypoints).find("A")->as<gps::Dictionary>());
}

TEST(ReadRoute, EverySentenceOverwritesTheName)
{
    Reading route;
    (void)route.take("PMGNRTE,3,1,c,1,First,A,a");
    (void)route.take("PMGNRTE,3,2,c,1,Second,B,a");
    EXPECT_EQ(*route.info.findString("name"), "Second");
    (void)route.take("PMGNRTE,3,3,c,1,,C,a");
    EXPECT_EQ(*route.info.findString("name"), "");
}

TEST(ReadRoute, AMissingSecondSentenceIsLoggedOnceAndTheThirdIsStillRead)
{
    Reading route;
    const support::LogCapture log;
    EXPECT_FALSE(route.take("PMGNRTE,3,1,c,1,R,A,a"));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_TRUE(route.take("PMGNRTE,3,3,c,1,R,C,a"));
    EXPECT_THAT(log.lines(), ElementsAre("route index should have been 1, was 2 instead"));
    EXPECT_EQ(route.names(), "AC");
    EXPECT_EQ(route.info.find("lastIndex")->int32Reading(), 3);
}

TEST(ReadRoute, APairWithAnEmptyNameIsSkippedAndTheNextOneIsRead)
{
    Reading route;
    const support::LogCapture log;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A,a,,b,C,c"));
    EXPECT_EQ(route.names(), "AC");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(ReadRoute, ReadsAnyNumberOfPairsAndALastNameWithoutAnIcon)
{
    Reading route;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A,a,B,a,C,a,D,a,E,a,F,a,A,a,B"));
    EXPECT_EQ(route.names(), "ABCDEFAB");
}

TEST(ReadRoute, IconsAreIgnored)
{
    Reading route;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A,B,C,,D,F"));
    EXPECT_EQ(route.names(), "ACD");
}

TEST(ReadRoute, AnUnknownWaypointIsLoggedAndSkipped)
{
    Reading route;
    const support::LogCapture log;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A,a,Nowhere,a,C,a"));
    EXPECT_EQ(route.names(), "AC");
    EXPECT_THAT(log.lines(), ElementsAre("referencing Nowhere waypoint that doesn't exist"));
}

TEST(ReadRoute, AListOfExactlySixFieldsHasNoPoints)
{
    Reading route;
    const support::LogCapture log;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R"));
    EXPECT_THAT(route.points, IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(ReadRoute, AListOfExactlySevenFieldsHasOnePoint)
{
    Reading route;
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,A"));
    EXPECT_EQ(route.names(), "A");
    EXPECT_TRUE(route.take("PMGNRTE,1,1,c,1,R,"));
    EXPECT_EQ(route.names(), "A");
}

TEST(ReadRoute, ABodyOfFewerThanSixFieldsThrowsAndChangesNothing)
{
    for (const auto* body : {kList, kMessage}) {
        for (std::size_t count = 1; count < 6; ++count) {
            Reading route;
            EXPECT_THROW((void)route.take(firstFields(body, count)), gps::RangeError) << count;
            EXPECT_TRUE(route.info.empty()) << count;
            EXPECT_THAT(route.points, IsEmpty()) << count;
        }
    }
}

TEST(ReadRoute, ARangeErrorNamesTheSentenceTheRequiredFieldAndTheCount)
{
    const auto rangeText = [](std::string_view body) {
        return support::rangeErrorOf([&] { (void)Reading{}.take(body); });
    };
    EXPECT_EQ(rangeText("PMGNRTE"), "A PMGNRTE sentence has no field 1: it has 1 field");
    for (std::size_t count = 2; count < 6; ++count)
        EXPECT_EQ(rangeText(firstFields(kList, count)),
                  "A PMGNRTE sentence has no field 5: it has " + std::to_string(count) + " fields");
    EXPECT_EQ(rangeText(firstFields(kMessage, 6)),
              "A PMGNRTE sentence has no field 6: it has 6 fields");
}

TEST(ReadRoute, AMessageOfSixFieldsThrowsAndOneOfSevenIsRead)
{
    Reading route;
    EXPECT_THROW((void)route.take(firstFields(kMessage, 6)), gps::RangeError);
    EXPECT_TRUE(route.info.empty());
    EXPECT_TRUE(route.take(withField(kMessage, 6, "")));
    EXPECT_EQ(*route.info.findString("comment"), "");
    EXPECT_TRUE(route.take(std::string{kMessage} + ",more"));
    EXPECT_EQ(*route.info.findString("comment"), "nice views");
}

TEST(ReadRoute, AnEmptyKindThrowsAndChangesNothing)
{
    Reading route;
    EXPECT_THROW((void)route.take(withField(kList, 3, "")), gps::RangeError);
    EXPECT_TRUE(route.info.empty());
}

TEST(ReadRoute, OnlyTheKindsFirstCharacterCounts)
{
    Reading route;
    EXPECT_FALSE(route.take(withField(kList, 3, "cX")));
    EXPECT_EQ(route.names(), "AB");
    EXPECT_TRUE(route.take(withField(kMessage, 3, "mc")));
    EXPECT_EQ(*route.info.findString("comment"), "nice views");
}

TEST(ReadRoute, AnotherKindAddsNeitherPointsNorComment)
{
    for (const auto* kind : {"w", "C", "M", " c"}) {
        Reading route;
        EXPECT_FALSE(route.take(withField(kList, 3, kind))) << kind;
        EXPECT_EQ(gps::describe(route.info), "{name = \"Loop\", lastIndex = 1}") << kind;
        EXPECT_THAT(route.points, IsEmpty()) << kind;
    }
}

TEST(ReadRoute, IsCompleteExactlyWhenNumberAndTotalAreEqual)
{
    for (const auto& [total, number, complete] :
         std::vector<std::tuple<const char*, const char*, bool>>{
             {"3", "2", false},
             {"3", "3", true},
             {"3", "4", false},
             {"03", "3", true},
             {"3x", "3", true},
             {"", "", true},
             {"x", "0", true},
             {"99999999999", "2147483647", true},
             {"-99999999999", "-2147483648", true},
         }) {
        Reading route;
        EXPECT_EQ(route.take(withField(withField(kList, 1, total), 2, number)), complete)
            << total << " " << number;
    }
}

TEST(ReadRoute, NumbersSaturateAtThe32BitBounds)
{
    Reading route;
    const support::LogCapture log;
    (void)route.take(withField(kList, 2, "99999999999"));
    EXPECT_EQ(route.info.find("lastIndex")->int32Reading(), 2147483647);
    (void)route.take(withField(kList, 2, "-99999999999"));
    EXPECT_EQ(route.info.find("lastIndex")->int32Reading(), -2147483647 - 1);
    EXPECT_THAT(log.lines(),
                ElementsAre("route index should have been 0, was 2147483646 instead",
                            "route index should have been 2147483647, was -2147483648 instead"));
}

TEST(ReadRoute, TheRouteNumberIsIgnored)
{
    Reading route;
    (void)route.take(kList);
    EXPECT_FALSE(route.info.contains("number"));
}

TEST(ReadRoute, AnotherLineIsRejectedAndChangesNothing)
{
    for (const auto& line :
         {std::string{}, std::string{kList}, support::breakChecksum(sentence(kList)),
          sentence(withField(kList, 0, "PMGNWPL")), sentence(withField(kList, 0, "PMGNRTEX")),
          sentence(withField(kList, 0, "pmgnrte")), sentence("PMGNCMD,END")}) {
        Reading route;
        EXPECT_FALSE(route.takeLine(line)) << line;
        EXPECT_TRUE(route.info.empty()) << line;
        EXPECT_THAT(route.points, IsEmpty()) << line;
    }
}

TEST(ReadRoute, ADamagedCharacterNeverGivesAnotherRoute)
{
    support::forEachDamage(sentence(kList), [](const std::string& line) {
        Reading route;
        (void)route.takeLine(line);
        if (route.info.empty())
            return;
        EXPECT_EQ(gps::describe(route.info), "{name = \"Loop\", lastIndex = 1}") << line;
        EXPECT_EQ(route.names(), "AB") << line;
    });
}

gps::Array pointsNamed(std::string_view names)
{
    gps::Array points;
    for (const char name : names)
        points.push_back(gps::Dictionary{{"name", std::string{name}}});
    return points;
}

TEST(WriteRoute, FivePointsAndACommentAreThreeListsAndAMessage)
{
    EXPECT_THAT(
        makeRouteSentencesFromWaypointList(
            pointsNamed("ABCDE"), {{"name", "Loop"}, {"comment", "nice views"}, {"number", 7}}),
        ElementsAre(sentence("PMGNRTE,4,1,c,7,Loop,A,a,B,a"),
                    sentence("PMGNRTE,4,2,c,7,Loop,C,a,D,a"), sentence("PMGNRTE,4,3,c,7,Loop,E,a"),
                    sentence("PMGNRTE,4,4,m,7,Loop,nice views")));
}

TEST(WriteRoute, AnEmptyListWithoutACommentHasNoSentences)
{
    EXPECT_THAT(makeRouteSentencesFromWaypointList({}, {{"name", "Loop"}}), IsEmpty());
    EXPECT_THAT(makeRouteSentencesFromWaypointList({}, {{"name", "Loop"}, {"comment", ""}}),
                IsEmpty());
    EXPECT_THAT(makeRouteSentencesFromWaypointList({}, {{"name", "Loop"}, {"comment", "_*,|"}}),
                IsEmpty());
}

TEST(WriteRoute, AnEmptyListWithACommentIsOneMessageNumberedOneOfOne)
{
    EXPECT_THAT(makeRouteSentencesFromWaypointList({}, {{"name", "Loop"}, {"comment", "hi"}}),
                ElementsAre(sentence("PMGNRTE,1,1,m,1,Loop,hi")));
}

TEST(WriteRoute, OnePointIsOneListNumberedOneOfOneWithOnePair)
{
    EXPECT_THAT(makeRouteSentencesFromWaypointList(pointsNamed("A"), {{"name", "Loop"}}),
                ElementsAre(sentence("PMGNRTE,1,1,c,1,Loop,A,a")));
}

TEST(WriteRoute, TwoPointsFillOneListAndAThirdOpensAnother)
{
    EXPECT_THAT(makeRouteSentencesFromWaypointList(pointsNamed("AB"), {}),
                ElementsAre(sentence("PMGNRTE,1,1,c,1,,A,a,B,a")));
    EXPECT_THAT(
        makeRouteSentencesFromWaypointList(pointsNamed("ABC"), {}),
        ElementsAre(sentence("PMGNRTE,2,1,c,1,,A,a,B,a"), sentence("PMGNRTE,2,2,c,1,,C,a")));
}

TEST(WriteRoute, TheRouteNumberIsTheRecordsOrOneIfItHasNone)
{
    for (const auto& [number, text] : std::vector<std::pair<gps::Value, std::string>>{
             {7, "7"},
             {0, "0"},
             {-3, "-3"},
             {std::int64_t{1} << 40, "2147483647"},
             {"12 and more", "12"},
             {"none", "0"},
             {gps::Array{}, "1"},
             {gps::Value{}, "1"},
         })
        EXPECT_THAT(makeRouteSentencesFromWaypointList(pointsNamed("A"), {{"number", number}}),
                    ElementsAre(sentence("PMGNRTE,1,1,c," + text + ",,A,a")))
            << gps::describe(number);
}

TEST(WriteRoute, AReadRouteHasNoNumberAndIsWrittenAsNumberOne)
{
    Reading route;
    ASSERT_TRUE(route.take("PMGNRTE,1,1,c,5,Loop,A,a"));
    EXPECT_THAT(makeRouteSentencesFromWaypointList(route.points, route.info),
                ElementsAre(sentence("PMGNRTE,1,1,c,1,Loop,A,a")));
}

TEST(WriteRoute, NamesAreFilteredAndCutTo20CharactersAndTheCommentIsNotCut)
{
    constexpr char kLong[] = "a*b,cdefghijklmnopqrstuvwxyz";
    EXPECT_THAT(
        makeRouteSentencesFromWaypointList({gps::Dictionary{{"name", kLong}}},
                                           {{"name", kLong}, {"comment", kLong}}),
        ElementsAre(sentence("PMGNRTE,2,1,c,1,abcdefghijklmnopqrst,abcdefghijklmnopqrst,a"),
                    sentence("PMGNRTE,2,2,m,1,abcdefghijklmnopqrst,abcdefghijklmnopqrstuvwxyz")));
}

TEST(WriteRoute, APointsIconIsThatOfItsSymbol)
{
    for (const auto& [symbol, icon] :
         std::vector<std::pair<gps::Value, std::string>>{{"Campground", "j"},
                                                         {"ak", "ak"},
                                                         {"no such symbol", "a"},
                                                         {"", "a"},
                                                         {7, "a"},
                                                         {gps::Value{}, "a"}})
        EXPECT_THAT(makeRouteSentencesFromWaypointList(
                        {gps::Dictionary{{"name", "A"}, {"symbol", symbol}}}, {}),
                    ElementsAre(sentence("PMGNRTE,1,1,c,1,,A," + icon)))
            << gps::describe(symbol);
}

TEST(WriteRoute, APointThatIsNotARecordIsWrittenWithoutAName)
{
    EXPECT_THAT(makeRouteSentencesFromWaypointList({7, gps::Dictionary{{"name", "B"}}}, {}),
                ElementsAre(sentence("PMGNRTE,1,1,c,1,,,a,B,a")));
}

TEST(WriteRoute, WrittenRoutesReadBackAsTheSameRoute)
{
    Reading route;
    const auto sentences = makeRouteSentencesFromWaypointList(
        pointsNamed("ABCDE"), {{"name", "Loop"}, {"comment", "nice views"}});
    std::vector<bool> answers;
    const support::LogCapture log;
    for (const auto& line : sentences)
        answers.push_back(route.takeLine(line));
    EXPECT_THAT(answers, ElementsAre(false, false, false, true));
    EXPECT_EQ(route.names(), "ABCDE");
    EXPECT_EQ(*route.info.findString("comment"), "nice views");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(makeRouteSentencesFromWaypointList(route.points, route.info), sentences);
}

} // namespace
} // namespace magellan
