// SPDX-License-Identifier: MIT
// Sends to a receiver's folders: brackets, folders, failures, and the start of the worker.

#include "../../support/LogCapture.h"
#include "../../support/ReceiverFolder.h"
#include "../../support/RecordingReceiver.h"
#include "Waypoint.h"

#include <plugin/fsdevice/MagellanGPSPlugin.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

using support::kClosing;
using support::waypoint;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class SendDriver : public testing::Test {
protected:
    SendDriver()
    {
        receiver.unitFile("12345");
        for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
            receiver.folder().makeFolder(name);
        receiver.languageFile(
            {"MyPOIs=My POIs", "Geocaches=Geocaches", "Routes=Routes", "TrackLogs=Track Logs"});
    }

    /// Sends, and waits for the end if the worker started. @return  the error that the driver
    /// returned
    std::optional<gps::Error> send(const gps::Dictionary* data, const gps::Dictionary& options = {})
    {
        const support::TestFolders folders{{receiver.path()}};
        const auto driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
        auto error = driver->gpsRunSend(data, status, options);
        EXPECT_TRUE(status->waitUntilIdle());
        return error;
    }

    [[nodiscard]] bool exists(std::string_view name) const
    {
        return std::filesystem::exists(receiver.path(name));
    }

    support::ReceiverFolder receiver;
    std::shared_ptr<support::RecordingReceiver> status =
        std::make_shared<support::RecordingReceiver>();
    support::LogCapture log;
};

TEST_F(SendDriver, WithoutDataOnlyTheEndIsReportedAndThereIsNoError)
{
    EXPECT_FALSE(send(nullptr));
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(SendDriver, WithoutADeviceTheNoSelectionErrorIsReturnedAfterTheEnd)
{
    const support::TestFolders none{{}};
    const auto driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    const gps::Dictionary data;
    const auto error = driver->gpsRunSend(&data, status, {});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), -1);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

// Asks the driver to stop as soon as the first kind is sent.
struct StoppingReceiver final : support::RecordingReceiver {
    void startSending(std::string_view label, gps::TransferKind kind) override
    {
        RecordingReceiver::startSending(label, kind);
        driver.lock()->requestStop();
    }
    std::weak_ptr<magellan::MagellanGPSPlugin> driver;
};

TEST_F(SendDriver, NothingIsWrittenAfterARequestToStop)
{
    const support::TestFolders folders{{receiver.path()}};
    const auto driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    const auto stopping = std::make_shared<StoppingReceiver>();
    stopping->driver = driver;
    const gps::Dictionary data{{"waypoint", gps::Array{waypoint("A")}}, {"route", gps::Array{}}};
    EXPECT_FALSE(driver->gpsRunSend(&data, stopping, {}));
    EXPECT_TRUE(stopping->waitUntilIdle());
    EXPECT_THAT(stopping->calls(),
                ElementsAre("startSending Waypoints 3", "endSending 3", "gpsStateChange 0"));
    EXPECT_FALSE(exists("My POIs/Default POI File.upt"));
    EXPECT_FALSE(exists("Routes/Default Route File.rte"));
}

TEST_F(SendDriver, WithoutDataNoDeviceIsNeeded)
{
    const support::TestFolders none{{}};
    EXPECT_FALSE(magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn")
                     ->gpsRunSend(nullptr, status, {}));
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(SendDriver, DataWithoutAnyKindHasNoBracket)
{
    const gps::Dictionary data{{"track", "no list"}, {"waypoints", gps::Array{waypoint("A")}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(SendDriver, DataWithOnlyRoutesHasTheirBracketAndTheEnd)
{
    const gps::Dictionary data{{"route", gps::Array{}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Routes 2", "endSending 2", "gpsStateChange 0"));
    EXPECT_EQ(receiver.folder().read("Routes/Default Route File.rte"), kClosing);
}

TEST_F(SendDriver, KindsAreSentInTheOrderTracksWaypointsRoutesFromTheWorker)
{
    const gps::Dictionary data{{"route", gps::Array{}},
                               {"waypoint", gps::Array{waypoint("A")}},
                               {"track", gps::Array{gps::Dictionary{}}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Tracks 1", "endSending 1", "startSending Waypoints 3",
                            "endSending 3", "startSending Routes 2", "endSending 2",
                            "gpsStateChange 0"));
    EXPECT_FALSE(status->threads().contains(std::this_thread::get_id()));
    EXPECT_EQ(receiver.folder().read("Track Logs/TKLG000.log"), kClosing);
}

TEST_F(SendDriver, WithGeocachesOnlyTheBracketIsOfWaypointsAndNoWaypointFileIsWritten)
{
    const gps::Dictionary data{{"waypoint", gps::Array{waypoint("Oak", "Geocache")}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Waypoints 3", "endSending 3", "gpsStateChange 0"));
    EXPECT_FALSE(exists("My POIs/Default POI File.upt"));
    EXPECT_THAT(receiver.folder().read("Geocaches/Default Geocache File.gs"), HasSubstr("Oak"));
}

TEST_F(SendDriver, GeocachesAreWrittenInTheReverseOfTheirOrder)
{
    const gps::Dictionary data{
        {"waypoint", gps::Array{waypoint("First", "Geocache"), waypoint("Second", "Geocache")}}};
    EXPECT_FALSE(send(&data));
    const auto text = receiver.folder().read("Geocaches/Default Geocache File.gs");
    EXPECT_LT(text.find("Second"), text.find("First"));
}

TEST_F(SendDriver, WithoutAGeocacheFolderGeocachesAreWrittenWithTheWaypoints)
{
    receiver.languageFile({"MyPOIs=My POIs"});
    const gps::Dictionary data{{"waypoint", gps::Array{waypoint("Oak", "Geocache")}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(receiver.folder().read("My POIs/Default POI File.upt"), HasSubstr("Oak"));
    EXPECT_FALSE(exists("Geocaches/Default Geocache File.gs"));
}

TEST_F(SendDriver, EmptyWaypointListWritesNothingIfThereIsAGeocacheFolder)
{
    const gps::Dictionary data{{"waypoint", gps::Array{}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Waypoints 3", "endSending 3", "gpsStateChange 0"));
    EXPECT_FALSE(exists("My POIs/Default POI File.upt"));
}

TEST_F(SendDriver, EmptyWaypointListRewritesTheDefaultFilesWaypointsIfThereIsNoGeocacheFolder)
{
    receiver.languageFile({"MyPOIs=My POIs"});
    const auto present = support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,Old,,b");
    receiver.put("My POIs/Default POI File.upt", {present, "no sentence"});
    const gps::Dictionary data{{"waypoint", gps::Array{}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Waypoints 3", "endSending 3", "gpsStateChange 0"));
    EXPECT_EQ(receiver.folder().read("My POIs/Default POI File.upt"), present + "\r\n" + kClosing);
}

TEST_F(SendDriver, MissingFolderKeyKeepsTheBracketsAndWritesNothing)
{
    receiver.languageFile({"MyPOIs=My POIs"});
    const gps::Dictionary data{{"track", gps::Array{gps::Dictionary{}}}};
    EXPECT_FALSE(send(&data));
    EXPECT_THAT(status->calls(),
                ElementsAre("startSending Tracks 1", "endSending 1", "gpsStateChange 0"));
    EXPECT_FALSE(exists("Track Logs/TKLG000.log"));
}

TEST_F(SendDriver, FailedWriteIsLoggedAndTheNextKindIsStillWritten)
{
    std::filesystem::remove(receiver.path("Track Logs"));
    const gps::Dictionary data{{"track", gps::Array{gps::Dictionary{}}}, {"route", gps::Array{}}};
    EXPECT_FALSE(send(&data));
    EXPECT_EQ(log.errors().at(0).code(), 4);
    EXPECT_TRUE(exists("Routes/Default Route File.rte"));
}

TEST_F(SendDriver, TooShortSentenceFailsOnlyItsFileAndTheGeocachesOfTheBracketAreWritten)
{
    const auto damaged = support::sentence("PMGNWPL,4630.00000,N");
    receiver.put("My POIs/Default POI File.upt", {damaged});
    const gps::Dictionary data{
        {"waypoint", gps::Array{waypoint("A"), waypoint("Oak", "Geocache")}}};
    EXPECT_FALSE(send(&data));
    EXPECT_EQ(receiver.folder().read("My POIs/Default POI File.upt"), damaged + "\r\n");
    EXPECT_THAT(receiver.folder().read("Geocaches/Default Geocache File.gs"), HasSubstr("Oak"));
    EXPECT_THAT(log.lines(), testing::Contains(HasSubstr("PMGNWPL")));
    EXPECT_EQ(log.errors().at(0).path(), receiver.path("My POIs/Default POI File.upt"));
    EXPECT_EQ(status->calls().back(), "gpsStateChange 0");
}

TEST_F(SendDriver, OptionDebugSetsTheDebugLevel)
{
    const support::TestFolders folders{{receiver.path()}};
    const auto driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    EXPECT_FALSE(driver->gpsRunSend(nullptr, status, {{"debug", 3}}));
    EXPECT_EQ(driver->debugLevel(), 3);
}

} // namespace
