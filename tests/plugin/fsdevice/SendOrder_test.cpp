// SPDX-License-Identifier: MIT
// Which jobs a send has, in which order, and where they write.

#include <plugin/fsdevice/SendOrder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const gps::Dictionary kFolders{
    {"MyPOIs", "P"}, {"Geocaches", "G"}, {"Routes", "R"}, {"TrackLogs", "T"}};
const gps::Value kFlag = gps::Dictionary{{"symbol", "Flag"}};
const gps::Value kCache = gps::Dictionary{{"symbol", "Geocache"}};

/// Each bracket as "LABEL KIND:" followed by "TARGET(COUNT)" for each job.
std::vector<std::string> bracketTexts(const gps::Dictionary& data,
                                      const gps::Dictionary& folders = kFolders)
{
    std::vector<std::string> brackets;
    for (const auto& bracket : sendOrder(data, folders, "/v")) {
        auto& text = brackets.emplace_back(bracket.label);
        text += ' ' + std::to_string(static_cast<int>(bracket.kind)) + ':';
        for (const auto& job : bracket.jobs)
            text += ' ' + (job.folder ? targetOf(job) : "nowhere") + '(' +
                    std::to_string(job.records().size()) + ')';
    }
    return brackets;
}

TEST(SendOrder, IsTracksThenWaypointsWithGeocachesThenRoutes)
{
    const gps::Dictionary data{{"route", gps::Array{gps::Dictionary{}}},
                               {"waypoint", gps::Array{kCache, kFlag, kFlag}},
                               {"track", gps::Array{gps::Dictionary{}, gps::Dictionary{}}}};
    EXPECT_THAT(bracketTexts(data), ElementsAre("Tracks 1: /v/T(2)",
                                                "Waypoints 3: /v/P/Default POI File.upt(2) "
                                                "/v/G/Default Geocache File.gs(1)",
                                                "Routes 2: /v/R/Default Route File.rte(1)"));
}

TEST(SendOrder, AKeyThatIsMissingOrNotAnArrayHasNoBracket)
{
    EXPECT_THAT(bracketTexts({}), IsEmpty());
    EXPECT_THAT(bracketTexts({{"track", 1}, {"waypoint", "A"}, {"route", gps::Dictionary{}}}),
                IsEmpty());
}

TEST(SendOrder, WithGeocachesOnlyNoWaypointFileIsWritten)
{
    EXPECT_THAT(bracketTexts({{"waypoint", gps::Array{kCache}}}),
                ElementsAre("Waypoints 3: /v/G/Default Geocache File.gs(1)"));
}

TEST(SendOrder, AnEmptyWaypointListWritesNothingIfThereIsAGeocacheFolder)
{
    EXPECT_THAT(bracketTexts({{"waypoint", gps::Array{}}}), ElementsAre("Waypoints 3:"));
    EXPECT_THAT(bracketTexts({{"waypoint", gps::Array{}}}, {{"MyPOIs", "P"}}),
                ElementsAre("Waypoints 3: /v/P/Default POI File.upt(0)"));
}

TEST(SendOrder, GeocachesAreWaypointsIfThereIsNoGeocacheFolder)
{
    EXPECT_THAT(bracketTexts({{"waypoint", gps::Array{kCache, kFlag}}}, {{"MyPOIs", "P"}}),
                ElementsAre("Waypoints 3: /v/P/Default POI File.upt(2)"));
}

TEST(SendOrder, AKindWithoutAFolderKeepsItsBracketAndJob)
{
    EXPECT_THAT(bracketTexts({{"track", gps::Array{}}, {"route", gps::Array{gps::Dictionary{}}}},
                             {{"TrackLogs", ".."}}),
                ElementsAre("Tracks 1: nowhere(0)", "Routes 2: nowhere(1)"));
}

} // namespace
} // namespace magellan
