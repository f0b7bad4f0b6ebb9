// SPDX-License-Identifier: MIT

#include "../../support/LogCapture.h"
#include "../../support/ReceiverFolder.h"
#include "../../support/RecordingReceiver.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

#include <plugin/fsdevice/MagellanGPSPlugin.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Fate = gps::PlannedFile::Fate;

constexpr char kClosing[] = "$PMGNCMD,END*3D";

gps::Dictionary waypoint(std::string_view name, std::string_view symbol = "Flag")
{
    return {{"name", name}, {"symbol", symbol}, {"point", gps::GPSPoint{46.5, 7.25, 400, 0, 0}}};
}

class SendPlan : public testing::Test {
protected:
    SendPlan()
    {
        receiver.unitFile("12345");
        for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
            receiver.folder().makeFolder(name);
        receiver.languageFile(
            {"MyPOIs=My POIs", "Geocaches=Geocaches", "Routes=Routes", "TrackLogs=Track Logs"});
    }

    [[nodiscard]] std::shared_ptr<magellan::MagellanGPSPlugin> driver() const
    {
        const support::TestFolders folders{{receiver.path()}};
        return magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    [[nodiscard]] gps::SendPlan plan(const gps::Dictionary& data) const
    {
        return driver()->planSend(data);
    }

    support::ReceiverFolder receiver;
};

TEST_F(SendPlan, WhatIsPlannedIsWhatASendWritesByteForByte)
{
    receiver.put("My POIs/Default POI File.upt",
                 {support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,Old,,b")});
    receiver.put("Track Logs/TKLG000.log", {});
    const gps::Dictionary data{
        {"track", gps::Array{gps::Dictionary{}, gps::Dictionary{}}},
        {"waypoint", gps::Array{waypoint("A"), waypoint("Oak", "Geocache")}},
        {"route",
         gps::Array{gps::Dictionary{{"name", "R"}, {"points", gps::Array{waypoint("A")}}}}}};
    const auto planned = plan(data);
    ASSERT_THAT(planned.files, SizeIs(5));
    EXPECT_EQ(planned.files[0].path, receiver.path("Track Logs/TKLG001.log"));
    EXPECT_EQ(planned.files[1].path, receiver.path("Track Logs/TKLG002.log"));
    EXPECT_EQ(planned.files[2].fate, Fate::kMerged);
    EXPECT_EQ(planned.files[3].fate, Fate::kMade);

    const auto status = std::make_shared<support::RecordingReceiver>();
    ASSERT_FALSE(driver()->gpsRunSend(&data, status, {}));
    ASSERT_TRUE(status->waitUntilIdle());
    for (const auto& file : planned.files) {
        const auto name = file.path.substr(receiver.path().size() + 1);
        EXPECT_EQ(receiver.folder().read(name), file.content) << name;
    }
}

TEST_F(SendPlan, ChangesNothing)
{
    (void)plan({{"track", gps::Array{gps::Dictionary{}}},
                {"waypoint", gps::Array{waypoint("A")}},
                {"route", gps::Array{}}});
    for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
        EXPECT_TRUE(std::filesystem::is_empty(receiver.path(name))) << name;
}

TEST_F(SendPlan, UnreadablePresentFileIsNamedWithItsError)
{
    receiver.folder().put("My POIs/Default POI File.upt", "caf\xE9");
    const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].fate, Fate::kMerged);
    ASSERT_TRUE(planned.files[0].error);
    EXPECT_EQ(planned.files[0].error->code(), 261);
}

TEST_F(SendPlan, MissingFolderDamagedFileAndTextOutsideAsciiLeaveTheFileWithTheReason)
{
    std::filesystem::remove(receiver.path("Track Logs"));
    receiver.put("My POIs/Default POI File.upt", {support::sentence("PMGNWPL,4630.00000,N")});
    const gps::Dictionary foreign{{"name", "R"}, {"points", gps::Array{waypoint("A", "\xC3\xA9")}}};
    const auto planned = plan({{"track", gps::Array{gps::Dictionary{}}},
                               {"waypoint", gps::Array{waypoint("A")}},
                               {"route", gps::Array{foreign}}});
    ASSERT_THAT(planned.files, SizeIs(3));
    for (const auto& file : planned.files)
        EXPECT_EQ(file.fate, Fate::kLeft) << file.path;
    EXPECT_EQ(planned.files[0].error->code(), 4);
    EXPECT_EQ(planned.files[1].error->domain(), gps::kRangeErrorDomain);
    EXPECT_EQ(planned.files[2].error->code(), 517);
}

TEST_F(SendPlan, AFolderInTheDefaultFilesPlaceLeavesItWithTheReason)
{
    std::filesystem::create_directory(receiver.path("My POIs/Default POI File.upt"));
    const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].fate, Fate::kLeft);
    EXPECT_EQ(planned.files[0].error->code(), 512);
}

TEST_F(SendPlan, GeocachesOfWhichOneHasNoPlaceAreLeftWithoutAnError)
{
    const auto planned =
        plan({{"waypoint", gps::Array{gps::Dictionary{{"name", "Oak"}, {"symbol", "Geocache"}}}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].fate, Fate::kLeft);
    EXPECT_FALSE(planned.files[0].error);
}

TEST_F(SendPlan, TracksPastTheLastFreeNumberAreSaid)
{
    for (int number = 0; number < 998; ++number)
        receiver.folder().put("Track Logs/TKLG" +
                                  std::string(number < 10    ? "00"
                                              : number < 100 ? "0"
                                                             : "") +
                                  std::to_string(number) + ".log",
                              "");
    const auto planned =
        plan({{"track", gps::Array{gps::Dictionary{}, gps::Dictionary{}, gps::Dictionary{}}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].path, receiver.path("Track Logs/TKLG998.log"));
    EXPECT_THAT(planned.remarks, ElementsAre(HasSubstr("no free name for 2 tracks in")));
    EXPECT_THAT(plan({{"track", gps::Array{gps::Dictionary{}, gps::Dictionary{}}}}).remarks,
                ElementsAre(HasSubstr("no free name for 1 track in")));
}

TEST_F(SendPlan, WithoutADeviceThereIsNothing)
{
    const support::TestFolders none{{}};
    const auto lonely = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    EXPECT_THAT(lonely->planSend({{"waypoint", gps::Array{waypoint("A")}}}).files, IsEmpty());
    EXPECT_THAT(lonely->dataFolders(), IsEmpty());
    EXPECT_EQ(lonely->deviceIdentifier(), std::nullopt);
}

TEST_F(SendPlan, DataFoldersAreTheFoursThatExistEachOnce)
{
    receiver.languageFile(
        {"MyPOIs=My POIs", "Geocaches=My POIs", "Routes=gone", "TrackLogs=Track Logs"});
    EXPECT_THAT(driver()->dataFolders(),
                ElementsAre(receiver.path("My POIs"), receiver.path("Track Logs")));
}

TEST_F(SendPlan, IdentifierIsTheSerialNumber)
{
    EXPECT_EQ(driver()->deviceIdentifier(), "12345");
    receiver.put("USBTRANS/UNIT_ID.DAT", {"Serial Number = 12345"});
    EXPECT_EQ(driver()->deviceIdentifier(), std::nullopt);
}

TEST_F(SendPlan, DeviceTextsHold81CharactersAndNames20OfThem)
{
    EXPECT_THAT(driver()->deviceCharacters(), SizeIs(81));
    EXPECT_EQ(driver()->longestName(), 20U);
}

} // namespace
