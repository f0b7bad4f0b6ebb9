// SPDX-License-Identifier: MIT
// Which texts of a plan a send may write again, and that a send after a plan writes the same bytes,
// reports the same lines and logs the same failures as one without.

#include "../../support/LogCapture.h"
#include "../../support/ReceiverFolder.h"
#include "../../support/RecordingReceiver.h"
#include "Waypoint.h"

#include <gps/GPSFileDevice.h>
#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <plugin/fsdevice/PlannedTexts.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

using magellan::PlannedTexts;
using magellan::RecordKind;
using support::waypoint;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

namespace {

class PlannedTextsOfAMerge : public testing::Test {
protected:
    PlannedTextsOfAMerge()
    {
        planned.add(RecordKind::kWaypoints, records, "before", {"after", {.seen = 3}});
    }

    [[nodiscard]] bool isFound(RecordKind kind, const gps::Value& list,
                               std::string_view present) const
    {
        return planned.find(kind, *list.as<gps::Array>(), present).has_value();
    }

    gps::Value records = gps::Array{waypoint("A"), waypoint("B")};
    PlannedTexts planned;
};

TEST_F(PlannedTextsOfAMerge, AreFoundForTheSameRecordsAndTheSamePresentText)
{
    const auto& list = *std::as_const(records).as<gps::Array>();
    const auto found = planned.find(RecordKind::kWaypoints, list, "before");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->text, "after");
    EXPECT_EQ(found->present.seen, 3U);
    EXPECT_TRUE(isFound(RecordKind::kWaypoints, gps::Value{records}, "before"));
}

TEST_F(PlannedTextsOfAMerge, AreFoundForAnotherArrayOfTheSameRecords)
{
    const auto& list = *std::as_const(records).as<gps::Array>();
    EXPECT_TRUE(isFound(RecordKind::kWaypoints, gps::Array{list[0], list[1]}, "before"));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, gps::Array{list[1], list[0]}, "before"));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, gps::Array{list[0]}, "before"));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, gps::Array{list[0], list[1], list[1]}, "before"));
}

TEST_F(PlannedTextsOfAMerge, AreNotFoundForAnotherKindOrPresentText)
{
    EXPECT_FALSE(isFound(RecordKind::kGeocaches, records, "before"));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, records, "befor"));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, records, ""));
}

TEST_F(PlannedTextsOfAMerge, AreNotFoundOnceARecordHasChanged)
{
    records.as<gps::Array>()->at(1).as<gps::Dictionary>()->set("comment", "new");
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, records, "before"));
}

// Elements that are no records are never written, but they have no identity either.
TEST_F(PlannedTextsOfAMerge, AreNotFoundForAnotherArrayWithAnElementThatIsNoRecord)
{
    const gps::Value list = gps::Array{"no record"};
    planned.add(RecordKind::kWaypoints, list, "", {"after", {}});
    EXPECT_TRUE(isFound(RecordKind::kWaypoints, list, ""));
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, gps::Array{"no record"}, ""));
}

TEST_F(PlannedTextsOfAMerge, AreGoneAfterAClear)
{
    planned.clear();
    EXPECT_FALSE(isFound(RecordKind::kWaypoints, records, "before"));
}

TEST(PlannedTextsOfTracks, AreFoundForTheSameTrackOnly)
{
    const gps::Value track = gps::Dictionary{{"name", "Day"}};
    const gps::Value equal = gps::Dictionary{{"name", "Day"}};
    PlannedTexts planned;
    EXPECT_FALSE(planned.findTrack(track));
    planned.addTrack(track, "text");
    ASSERT_TRUE(planned.findTrack(track));
    EXPECT_EQ(*planned.findTrack(track), "text");
    EXPECT_FALSE(planned.findTrack(equal));
    auto changed = track;
    changed.as<gps::Dictionary>()->set("name", "Night");
    EXPECT_FALSE(planned.findTrack(changed));
    planned.clear();
    EXPECT_FALSE(planned.findTrack(track));
}

/// Sends to a receiver with the plan of a snapshot that still exists.
class SendAfterAPlan : public testing::Test {
protected:
    SendAfterAPlan()
    {
        receiver.unitFile("12345");
        for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
            receiver.folder().makeFolder(name);
        receiver.languageFile(
            {"MyPOIs=My POIs", "Geocaches=Geocaches", "Routes=Routes", "TrackLogs=Track Logs"});
        driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    void plan()
    {
        snapshot = std::dynamic_pointer_cast<gps::GPSFileDevice>(driver)->takeSnapshot();
        (void)snapshot->planSend(data);
    }

    void send()
    {
        const auto status = std::make_shared<support::RecordingReceiver>();
        ASSERT_FALSE(driver->gpsRunSend(&data, status, {}));
        ASSERT_TRUE(status->waitUntilIdle());
    }

    [[nodiscard]] std::string waypoints() const
    {
        return receiver.folder().read("My POIs/Default POI File.upt");
    }

    void putWaypoint(std::string_view name)
    {
        receiver.put("My POIs/Default POI File.upt",
                     {support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M," +
                                        std::string{name} + ",,b"),
                      "a note"});
    }

    support::ReceiverFolder receiver;
    support::TestFolders folders{{receiver.path()}};
    support::LogCapture log;
    std::shared_ptr<magellan::MagellanGPSPlugin> driver;
    std::unique_ptr<gps::DeviceSnapshot> snapshot;
    gps::Dictionary data{
        {"waypoint", gps::Array{waypoint("A"), waypoint("Oak", "Geocache")}},
        {"track", gps::Array{gps::Dictionary{{"points", gps::Array{waypoint("")}}}}}};
};

TEST_F(SendAfterAPlan, KeepsWhatAnotherProgramHasWrittenInBetween)
{
    putWaypoint("Old");
    plan();
    putWaypoint("New");
    send();
    EXPECT_THAT(waypoints(), HasSubstr(",New,"));
    EXPECT_THAT(waypoints(), Not(HasSubstr(",Old,")));
    EXPECT_THAT(waypoints(), HasSubstr(",A,"));
}

TEST_F(SendAfterAPlan, WritesOtherDataThanThePlanned)
{
    plan();
    data.set("waypoint", gps::Array{waypoint("B")});
    data.set("track", gps::Array{gps::Dictionary{{"points", gps::Array{}}}});
    send();
    EXPECT_THAT(waypoints(), HasSubstr(",B,"));
    EXPECT_THAT(waypoints(), Not(HasSubstr(",A,")));
    EXPECT_EQ(receiver.folder().read("Track Logs/TKLG000.log"), support::kClosing);
}

TEST_F(SendAfterAPlan, ReportsTheLinesOfThePresentFileLikeOneWithoutAPlan)
{
    const auto linesOf = [this] {
        for (const auto& file : driver->transferAccount().files) {
            if (file.kind == "waypoints")
                return file.lines;
        }
        return gps::LineAccount{};
    };
    putWaypoint("Old");
    send();
    const auto without = linesOf();
    putWaypoint("Old");
    plan();
    send();
    EXPECT_EQ(linesOf().seen, 2U);
    EXPECT_EQ(linesOf().seen, without.seen);
    EXPECT_EQ(linesOf().accepted, without.accepted);
    EXPECT_EQ(linesOf().skipped, without.skipped);
    ASSERT_THAT(linesOf().details, SizeIs(1));
    EXPECT_EQ(linesOf().details[0].number, without.details.at(0).number);
}

TEST_F(SendAfterAPlan, LogsARecordThatCannotBeWrittenAgain)
{
    data.set("waypoint", gps::Array{waypoint("A"), gps::Dictionary{{"name", "nowhere"}}});
    const auto complaints = [this] {
        const auto lines = log.lines();
        return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("contains no point") != line.npos;
        });
    };
    plan();
    EXPECT_EQ(complaints(), 1);
    send();
    EXPECT_EQ(complaints(), 2);
}

TEST_F(SendAfterAPlan, DoesNotKeepThePlanLongerThanItsSnapshot)
{
    plan();
    snapshot.reset();
    send();
    EXPECT_THAT(waypoints(), HasSubstr(",A,"));
}

} // namespace
