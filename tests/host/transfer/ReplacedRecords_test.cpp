// SPDX-License-Identifier: MIT

#include "host/transfer/ReplacedRecords.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

namespace {

using Action = gps::PlannedFile::Action;
using gps::Array;
using gps::Dictionary;
using support::waypointAt;
using testing::ElementsAre;
using testing::IsEmpty;

Dictionary heldRecord(const char* name, double latitude, const char* symbol = "")
{
    auto record = waypointAt(latitude);
    record.set("name", name);
    record.set("symbol", symbol);
    return record;
}

Dictionary heldRoute(const char* name, Array points)
{
    return {{"name", name}, {"points", std::move(points)}};
}

// A device with a file of each kind, into which a send merges, and another file of waypoints.
class ReplacedRecords : public testing::Test {
protected:
    ReplacedRecords()
    {
        for (const char* const path : {"/w", "/g", "/r", "/other"})
            driver_.files.push_back({path, "", {}});
        driver_.decode = [this](std::string_view path, std::string_view) {
            return contents_[std::string{path}];
        };
        plan_.files = {{"/w", Action::kMerge, "", {}, "waypoints"},
                       {"/g", Action::kMerge, "", {}, "geocaches"},
                       {"/r", Action::kMerge, "", {}, "routes"}};
        contents_["/w"] = {{"waypoint", Array{heldRecord("Camp", 1), heldRecord("Hut", 2)}}};
        contents_["/g"] = {{"waypoint", Array{heldRecord("GC1", 1, "Geocache")}}};
        contents_["/r"] = {
            {"route", Array{heldRoute("Loop", {heldRecord("A", 1), heldRecord("B", 2)})}}};
        driver_.records = {
            {"waypoint", Array{heldRecord("Camp", 1), heldRecord("Hut", 2),
                               heldRecord("GC1", 1, "Geocache"), heldRecord("Lake", 1)}},
            {"route", Array{heldRoute("Loop", {heldRecord("A", 1), heldRecord("B", 2)})}}};
    }

    [[nodiscard]] std::vector<std::string> replacedBy(const Dictionary& data)
    {
        std::vector<std::string> texts;
        for (const auto& record :
             host::replacedRecords(data, plan_, *driver_.takeSnapshot(), driver_))
            texts.push_back(std::string{record.kind} + ' ' + record.name);
        return texts;
    }

    support::FakeFileDriver driver_;
    gps::SendPlan plan_;
    std::map<std::string, Dictionary> contents_;
};

TEST_F(ReplacedRecords, RecordsWithTheNameOfADifferentSentOneAreNamed)
{
    EXPECT_THAT(
        replacedBy({{"waypoint", Array{heldRecord("Camp", 9), heldRecord("GC1", 9, "Geocache")}},
                    {"route", Array{heldRoute("Loop", {heldRecord("A", 1), heldRecord("C", 2)})}}}),
        ElementsAre("waypoint Camp", "geocache GC1", "route Loop"));
}

TEST_F(ReplacedRecords, EqualRecordDoesNotChange)
{
    EXPECT_THAT(
        replacedBy({{"waypoint", Array{heldRecord("Camp", 1), heldRecord("GC1", 1, "Geocache")}},
                    {"route", Array{heldRoute("Loop", {heldRecord("A", 1), heldRecord("B", 2)})}}}),
        IsEmpty());
}

TEST_F(ReplacedRecords, NewNameReplacesNothing)
{
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("camp", 9), heldRecord("Loop", 1)}}}),
                IsEmpty());
    EXPECT_THAT(
        replacedBy({{"waypoint", Array{heldRecord("Camp", 9, "Geocache"), heldRecord("GC1", 9)}}}),
        IsEmpty())
        << "the name of a record of another kind";
}

TEST_F(ReplacedRecords, FilesThatAreNotMergedIntoLoseNothing)
{
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("Lake", 9)}}}), IsEmpty())
        << "it is in another file";
    plan_.files[0].action = Action::kSkip;
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("Camp", 9)}}}), IsEmpty());
}

TEST_F(ReplacedRecords, LastRecordOfANameInTheFileCounts)
{
    contents_["/w"] = {{"waypoint", Array{heldRecord("Camp", 1), heldRecord("Camp", 9)}}};
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("Camp", 9)}}}), IsEmpty());
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("Camp", 1)}}}),
                ElementsAre("waypoint Camp"));
}

TEST_F(ReplacedRecords, GeocacheReplacesAWaypointWhereBothShareAFile)
{
    plan_.files.erase(plan_.files.begin() + 1);
    EXPECT_THAT(replacedBy({{"waypoint", Array{heldRecord("Camp", 9, "Geocache")}}}),
                ElementsAre("geocache Camp"));
}

} // namespace
