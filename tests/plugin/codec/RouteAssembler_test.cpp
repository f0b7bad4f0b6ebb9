// SPDX-License-Identifier: MIT
// Routes from waypoint and route sentences, and what is missing from them.

#include <gps/Error.h>
#include <plugin/codec/RouteAssembler.h>
#include <plugin/codec/SentenceFields.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {
namespace {

using gps::SkipReason;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr gps::GPSPoint kAnyPoint{46.5, 7.5, 500, 1, 2};

class Routes : public testing::Test {
protected:
    std::optional<AssembledRoute> add(std::string_view body)
    {
        return assembler.addSentence(SentenceFields{body}, ++number, lines);
    }

    /// "3 incomplete": the number of a sentence and what is missing from it.
    [[nodiscard]] std::vector<std::string> defects() const
    {
        std::vector<std::string> texts;
        for (const auto& [line, reason] : lines.details)
            texts.push_back(std::to_string(line) +
                            (reason == SkipReason::kIncomplete     ? " incomplete"
                             : reason == SkipReason::kUnknownPoint ? " unknown point"
                                                                   : " ?"));
        return texts;
    }

    RouteAssembler assembler;
    gps::LineAccount lines;
    std::uint64_t number = 0;
};

TEST_F(Routes, AreCompleteWithTheirLastSentence)
{
    assembler.addWayPoint({{"name", "A"}}, kAnyPoint);
    EXPECT_FALSE(add("PMGNRTE,2,1,c,1,LOOP,A,a"));
    const auto route = add("PMGNRTE,2,2,m,1,LOOP,nice");
    ASSERT_TRUE(route);
    EXPECT_EQ(gps::describe(route->info), "{name = \"LOOP\", lastIndex = 2, comment = \"nice\"}");
    ASSERT_EQ(route->points.size(), 1U);
    EXPECT_EQ(gps::describe(*route->points[0]), "{name = \"A\", point = (46.5, 7.5, 500, 1, 2)}");
    assembler.finish(lines);
    EXPECT_THAT(defects(), IsEmpty());
}

TEST_F(Routes, ShareTheRecordsOfTheirWaypoints)
{
    assembler.addWayPoint({{"name", "A"}}, kAnyPoint);
    const auto route = add("PMGNRTE,1,1,c,1,LOOP,A,a,A,a");
    ASSERT_TRUE(route);
    EXPECT_EQ(route->points[0], route->points[1]);
}

TEST_F(Routes, KeepTheWaypointThatTheirSentenceReferredTo)
{
    assembler.addWayPoint({{"name", "A"}, {"comment", "old"}}, kAnyPoint);
    (void)add("PMGNRTE,2,1,c,1,LOOP,A,a");
    assembler.addWayPoint({{"name", "A"}}, kAnyPoint);
    EXPECT_EQ(assembler.wayPointCount(), 1U);
    const auto route = add("PMGNRTE,2,2,c,1,LOOP,A,a");
    ASSERT_TRUE(route);
    EXPECT_NE(route->points[0]->findString("comment"), nullptr);
    EXPECT_EQ(route->points[1]->findString("comment"), nullptr);
}

TEST_F(Routes, AWaypointWithoutANameIsNotKept)
{
    EXPECT_FALSE(assembler.addWayPoint({{"comment", "c"}}, kAnyPoint));
    EXPECT_TRUE(assembler.addWayPoint({{"name", ""}}, kAnyPoint));
    EXPECT_EQ(assembler.wayPointCount(), 1U);
}

TEST_F(Routes, CountEachUnknownPoint)
{
    EXPECT_TRUE(add("PMGNRTE,1,1,c,1,LOOP,B,a,,a,C,a")->points.empty());
    EXPECT_THAT(defects(), ElementsAre("1 unknown point", "1 unknown point"));
}

TEST_F(Routes, AreIncompleteWithoutTheirFirstSentence)
{
    EXPECT_TRUE(add("PMGNRTE,2,2,c,1,LOOP"));
    EXPECT_THAT(defects(), ElementsAre("1 incomplete"));
}

TEST_F(Routes, AreIncompleteWithoutASentenceBetween)
{
    (void)add("PMGNRTE,3,1,c,1,LOOP");
    EXPECT_TRUE(add("PMGNRTE,3,3,c,1,LOOP"));
    assembler.finish(lines);
    EXPECT_THAT(defects(), ElementsAre("2 incomplete"));
}

TEST_F(Routes, AreIncompleteWithoutTheirLastSentenceWhenAnotherBegins)
{
    (void)add("PMGNRTE,2,1,c,1,LOOP");
    EXPECT_TRUE(add("PMGNRTE,1,1,c,2,BACK"));
    (void)add("PMGNRTE,2,1,c,3,BACK"); // the same name once more
    EXPECT_TRUE(add("PMGNRTE,2,2,c,3,BACK"));
    EXPECT_THAT(defects(), ElementsAre("1 incomplete", "4 incomplete"));
}

TEST_F(Routes, AreIncompleteWithoutTheirLastSentenceAtTheEnd)
{
    (void)add("PMGNRTE,2,1,c,1,LOOP");
    EXPECT_THAT(defects(), IsEmpty());
    assembler.finish(lines);
    assembler.finish(lines);
    EXPECT_THAT(defects(), ElementsAre("1 incomplete"));
}

TEST_F(Routes, AreNotIncompleteBecauseOfRepeatedSentences)
{
    (void)add("PMGNRTE,2,1,c,1,LOOP");
    (void)add("PMGNRTE,2,1,c,1,LOOP");
    EXPECT_TRUE(add("PMGNRTE,2,2,c,1,LOOP"));
    EXPECT_TRUE(add("PMGNRTE,2,2,c,1,LOOP"));
    assembler.finish(lines);
    EXPECT_THAT(defects(), IsEmpty());
}

TEST_F(Routes, ATruncatedSentenceChangesNothing)
{
    (void)add("PMGNRTE,2,1,c,1,LOOP");
    EXPECT_THROW((void)add("PMGNRTE,2,2,c"), gps::RangeError);
    EXPECT_TRUE(add("PMGNRTE,2,2,c,1,LOOP"));
    EXPECT_THAT(defects(), IsEmpty());
}

TEST(ReportRoute, ReportsTheRouteAndThenItsPointsInOrder)
{
    support::RecordingReceiver status;
    AssembledRoute route{.info = {{"name", "R"}}};
    for (const auto* name : {"B", "A"})
        route.points.push_back(std::make_shared<const gps::Dictionary>(
            gps::Dictionary{{"name", name}, {"point", kAnyPoint}}));
    reportRoute(route, status);
    EXPECT_THAT(status.calls(),
                ElementsAre("newRoute {name = \"R\"}",
                            "wayPoint (46.5, 7.5, 500, 1, 2) {name = \"B\", point = (46.5, 7.5, "
                            "500, 1, 2)}",
                            "wayPoint (46.5, 7.5, 500, 1, 2) {name = \"A\", point = (46.5, 7.5, "
                            "500, 1, 2)}"));
}

TEST(ReportRoute, ARouteWithoutPointsIsReportedAlone)
{
    support::RecordingReceiver status;
    reportRoute({}, status);
    EXPECT_THAT(status.calls(), ElementsAre("newRoute {}"));
}

} // namespace
} // namespace magellan
