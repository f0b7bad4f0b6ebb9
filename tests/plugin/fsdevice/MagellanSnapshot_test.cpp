// SPDX-License-Identifier: MIT
// What a snapshot reads, and that its plans are what a send then writes.

#include "../../support/AsNobody.h"
#include "../../support/LogCapture.h"
#include "../../support/ReceiverFolder.h"
#include "../../support/RecordingReceiver.h"
#include "Waypoint.h"

#include <gps/GPSFileDevice.h>
#include <gps/NumberText.h>
#include <plugin/fsdevice/MagellanGPSPlugin.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

using support::waypoint;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Action = gps::PlannedFile::Action;

class Snapshot : public testing::Test {
protected:
    Snapshot()
    {
        receiver.unitFile("12345");
        for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
            receiver.folder().makeFolder(name);
        receiver.languageFile(
            {"MyPOIs=My POIs", "Geocaches=Geocaches", "Routes=Routes", "TrackLogs=Track Logs"});
    }

    /// The interface of a new driver, as a host asks for it.
    static std::shared_ptr<gps::GPSFileDevice> fileDevice()
    {
        return std::dynamic_pointer_cast<gps::GPSFileDevice>(
            magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn"));
    }
    [[nodiscard]] std::shared_ptr<gps::GPSFileDevice> driver() const
    {
        const support::TestFolders folders{{receiver.path()}};
        return fileDevice();
    }

    [[nodiscard]] gps::SendPlan plan(const gps::Dictionary& data) const
    {
        return driver()->takeSnapshot()->planSend(data);
    }

    support::ReceiverFolder receiver;
};

TEST_F(Snapshot, ReportsTracksAndSkipsWhatCannotBeRead)
{
    const auto point = support::sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,,290208");
    receiver.put("Track Logs/cut.log", {support::sentence("PMGNTRK,1"), point});
    receiver.put("Track Logs/good.log", {point});
    receiver.folder().makeFolder("Track Logs/folder.log");
    const auto snapshot = driver()->takeSnapshot();
    support::RecordingReceiver status;
    snapshot->reportTracks(status);
    EXPECT_THAT(status.calls(),
                ElementsAre(testing::StartsWith("newTrack "), testing::StartsWith("trackPoint ")));
    std::filesystem::remove_all(receiver.path("Track Logs"));
    snapshot->reportTracks(status);
    EXPECT_THAT(status.calls(), SizeIs(2));
}

TEST_F(Snapshot, PlansWhatASendWritesByteForByte)
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
    EXPECT_EQ(planned.files[2].action, Action::kMerge);
    EXPECT_EQ(planned.files[3].action, Action::kCreate);

    const auto status = std::make_shared<support::RecordingReceiver>();
    const support::TestFolders folders{{receiver.path()}};
    const auto driver = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    ASSERT_FALSE(driver->gpsRunSend(&data, status, {}));
    ASSERT_TRUE(status->waitUntilIdle());
    for (const auto& file : planned.files) {
        const auto name = file.path.substr(receiver.path().size() + 1);
        EXPECT_EQ(receiver.folder().read(name), file.content) << name;
    }
}

TEST_F(Snapshot, PlanNamesTheFieldsThatAreLostOfEachKind)
{
    const gps::Dictionary track{{"name", "Day"}};
    const auto planned =
        plan({{"track", gps::Array{track}}, {"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.lostFields, SizeIs(1));
    EXPECT_EQ(planned.lostFields[0].kind, "tracks");
    EXPECT_EQ(planned.lostFields[0].field, "name");
}

TEST_F(Snapshot, PlanningWritesNothing)
{
    (void)plan({{"track", gps::Array{gps::Dictionary{}}},
                {"waypoint", gps::Array{waypoint("A")}},
                {"route", gps::Array{}}});
    for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
        EXPECT_TRUE(std::filesystem::is_empty(receiver.path(name))) << name;
}

TEST_F(Snapshot, APlannedMergeIntoAnUnreadableFileHasTheReadError)
{
    receiver.folder().put("My POIs/Default POI File.upt", "caf\xE9");
    const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].action, Action::kMerge);
    ASSERT_TRUE(planned.files[0].error);
    EXPECT_EQ(planned.files[0].error->code(), 261);
}

TEST_F(Snapshot, AMissingFolderADamagedFileAndATextOutsideAsciiAreSkippedWithTheReason)
{
    std::filesystem::remove(receiver.path("Track Logs"));
    receiver.put("My POIs/Default POI File.upt", {support::sentence("PMGNWPL,4630.00000,N")});
    const gps::Dictionary foreign{{"name", "R"}, {"points", gps::Array{waypoint("A", "\xC3\xA9")}}};
    const auto planned = plan({{"track", gps::Array{gps::Dictionary{}}},
                               {"waypoint", gps::Array{waypoint("A")}},
                               {"route", gps::Array{foreign}}});
    ASSERT_THAT(planned.files, SizeIs(3));
    for (const auto& file : planned.files)
        EXPECT_EQ(file.action, Action::kSkip) << file.path;
    EXPECT_EQ(planned.files[0].error->code(), 4);
    EXPECT_EQ(planned.files[1].error->domain(), gps::kRangeErrorDomain);
    EXPECT_EQ(planned.files[2].error->code(), 517);
}

TEST_F(Snapshot, AFolderWithTheDefaultFilesNameIsSkippedWithTheReason)
{
    std::filesystem::create_directory(receiver.path("My POIs/Default POI File.upt"));
    const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].action, Action::kSkip);
    EXPECT_EQ(planned.files[0].error->code(), 512);
}

TEST_F(Snapshot, GeocachesAreSkippedWithoutAnErrorIfOneHasNoPosition)
{
    const auto planned =
        plan({{"waypoint", gps::Array{gps::Dictionary{{"name", "Oak"}, {"symbol", "Geocache"}}}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].action, Action::kSkip);
    EXPECT_FALSE(planned.files[0].error);
}

TEST_F(Snapshot, TracksBeyondTheLastFreeNumberAreRemarkedOn)
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

TEST_F(Snapshot, LinkThatAFileReplacesIsRemarkedOn)
{
    const gps::Dictionary data{
        {"waypoint",
         gps::Array{gps::Dictionary{{"name", "Oak"}, {"point", gps::GPSPoint{46, 7}}}}}};
    const auto link = receiver.path("My POIs/Default POI File.upt");
    EXPECT_THAT(plan(data).remarks, IsEmpty());
    for (const char* const target : {"../target", "nosuch"}) {
        receiver.folder().put("target", "$PMGNCMD,END*3D");
        std::filesystem::remove(link);
        std::filesystem::create_symlink(target, link);
        EXPECT_THAT(plan(data).remarks,
                    ElementsAre(link + " is a link, and a file takes its place; what it leads to "
                                       "stays as it is."));
    }
}

const std::string kOld = support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,Old,,b");
const std::string kOak =
    support::sentence("PMGNGEO,4630.00000,N,00715.00000,E,0000400,M,Oak,,,,,,,,");
const std::string kPlain = support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0000400,M,P,,b");
const std::string kRoute = support::sentence("PMGNRTE,1,1,c,1,R,P,b");

std::vector<std::string> namesIn(const gps::Dictionary& records, std::string_view key)
{
    std::vector<std::string> names;
    for (const auto& record : *records.findArray(key))
        names.push_back(*record.as<gps::Dictionary>()->findString("name"));
    return names;
}

/// The records that a visit yields, as arrays by key.
class VisitedRecords {
public:
    [[nodiscard]] gps::RecordVisitor visitor()
    {
        return [this](std::string_view key, const gps::Dictionary& record) {
            if (!records_.contains(key))
                records_.set(key, gps::Array{});
            records_.findArray(key)->emplace_back(record);
        };
    }
    [[nodiscard]] const gps::Dictionary& get() const noexcept { return records_; }

private:
    gps::Dictionary records_;
};

gps::Dictionary recordsIn(const gps::GPSFileDevice& device, std::string_view path,
                          std::string_view content)
{
    VisitedRecords records;
    device.visitRecordsIn(path, content, records.visitor());
    return records.get();
}

gps::Dictionary recordsIn(const gps::GPSFileDevice& device, const gps::PlannedFile& file)
{
    return recordsIn(device, file.path, file.content);
}

gps::Dictionary recordsIn(const gps::DeviceSnapshot& snapshot)
{
    VisitedRecords records;
    snapshot.visitRecords(records.visitor());
    return records.get();
}

TEST_F(Snapshot, PlannedFilesDecodeToTheRecordsOfTheSend)
{
    const gps::Dictionary track{{"points", gps::Array{waypoint("")}}};
    const auto planned =
        plan({{"track", gps::Array{track}},
              {"waypoint", gps::Array{waypoint("A"), waypoint("Oak", "Geocache")}},
              {"route",
               gps::Array{gps::Dictionary{{"name", "R"}, {"points", gps::Array{waypoint("B")}}}}}});
    ASSERT_THAT(planned.files, SizeIs(4));
    const auto device = driver();
    EXPECT_THAT(namesIn(recordsIn(*device, planned.files[1]), "waypoint"), ElementsAre("A"));
    EXPECT_THAT(namesIn(recordsIn(*device, planned.files[2]), "waypoint"), ElementsAre("Oak"));
    const auto routes = recordsIn(*device, planned.files[3]);
    EXPECT_THAT(namesIn(routes, "route"), ElementsAre("R"));
    EXPECT_THAT(namesIn(*routes.findArray("route")->front().as<gps::Dictionary>(), "points"),
                ElementsAre("B"));
    const auto tracks = recordsIn(*device, planned.files[0]);
    const auto& points =
        *tracks.findArray("track")->front().as<gps::Dictionary>()->findArray("points");
    ASSERT_THAT(points, SizeIs(1));
    EXPECT_EQ(*gps::findPoint(*points.front().as<gps::Dictionary>()),
              (gps::GPSPoint{46.5, 7.25, 400, 0, 0}));
}

/// The latitudes of the points in a file, after the key of each.
std::string pointsIn(const gps::GPSFileDevice& device, std::string_view path,
                     std::string_view content)
{
    std::string text;
    device.visitPointsIn(path, content, [&text](std::string_view key, const gps::GPSPoint& point) {
        text.append(key).append(1, ' ');
        gps::appendShortest(text, point.latitude);
        text += ' ';
    });
    return text;
}

std::string threeLinesOf(std::string_view start, std::string_view end)
{
    std::string lines;
    for (const auto* latitude : {"4600.00000", "4700.00000", "4800.00000"})
        lines += support::sentence(std::string{start} + latitude + ",N,00715.00000,E,0,M" +
                                   std::string{end}) +
                 "\r\n";
    return lines;
}

TEST_F(Snapshot, AVisitOfPointsYieldsThoseOfEachKindInTheOrderOfTheFile)
{
    const auto device = driver();
    EXPECT_EQ(pointsIn(*device, "/a.log", threeLinesOf("PMGNTRK,", ",061548.00,A,,110808")),
              "track 46 track 47 track 48 ");
    EXPECT_EQ(pointsIn(*device, "/a.upt", threeLinesOf("PMGNWPL,", ",A,,a")),
              "waypoint 46 waypoint 47 waypoint 48 ");
    EXPECT_EQ(pointsIn(*device, "/a.gs", threeLinesOf("PMGNGEO,", ",A,,,,,,,,")),
              "waypoint 46 waypoint 47 waypoint 48 ");
    const auto route = support::sentence("PMGNWPL,4600.00000,N,00715.00000,E,0,M,A,,a") + "\r\n" +
                       support::sentence("PMGNWPL,4700.00000,N,00715.00000,E,0,M,B,,a") + "\r\n" +
                       support::sentence("PMGNRTE,1,1,c,1,R,B,a,A,a,B,a");
    EXPECT_EQ(pointsIn(*device, "/a.rte", route), "route 47 route 46 route 47 ");
    EXPECT_EQ(pointsIn(*device, "/a.txt", threeLinesOf("PMGNWPL,", ",A,,a")), "");
}

/// The names of the points in a file that no route uses.
std::vector<std::string> unusedPointsIn(const gps::GPSFileDevice& device, std::string_view path,
                                        std::string_view content)
{
    std::vector<std::string> names;
    dynamic_cast<const gps::GPSUnusedRoutePoints&>(device).visitUnusedRoutePointsIn(
        path, content, [&names](const gps::Dictionary& record) {
            EXPECT_NE(gps::findPoint(record), nullptr);
            names.push_back(*record.findString("name"));
        });
    return names;
}

TEST_F(Snapshot, PointsThatNoRouteUsesAreVisitedApart)
{
    const auto device = driver();
    const auto point = [](const char* name, const char* latitude) {
        return support::sentence(std::string{"PMGNWPL,"} + latitude + ",N,00715.00000,E,0,M," +
                                 name + ",,a") +
               "\r\n";
    };
    const auto content = point("A", "4600.00000") + point("B", "4700.00000") +
                         point("C", "4800.00000") + support::sentence("PMGNRTE,1,1,c,1,R,B,a,X,a") +
                         "\r\n";
    EXPECT_THAT(unusedPointsIn(*device, "/a.rte", content), ElementsAre("A", "C"));
    EXPECT_THAT(unusedPointsIn(*device, "/a.upt", content), IsEmpty());
    EXPECT_THAT(unusedPointsIn(*device, "/a.rte", content + point("B", "4900.00000")),
                ElementsAre("A", "B", "C"))
        << "the route uses the line before it";
    EXPECT_THAT(unusedPointsIn(*device, "/a.rte", content + support::sentence("PMGNWPL,1")),
                IsEmpty())
        << "a send merges nothing into a damaged file";
}

TEST_F(Snapshot, AVisitOfPointsSkipsAWaypointWithoutANameAndEndsAtADamagedSentence)
{
    const auto device = driver();
    const auto nameless = support::sentence("PMGNWPL,4700.00000,N,00715.00000,E,0");
    EXPECT_EQ(pointsIn(*device, "/a.upt", nameless + "\r\n" + kPlain), "waypoint 46.5 ");
    const auto damaged = support::sentence("PMGNWPL,4630.00000,N");
    EXPECT_EQ(pointsIn(*device, "/a.upt", kPlain + "\r\n" + damaged + "\r\n" + kPlain),
              "waypoint 46.5 ");
}

TEST_F(Snapshot, AFileOfAnotherKindHasNoRecords)
{
    EXPECT_EQ(recordsIn(*driver(), "/a.txt", kPlain), gps::Dictionary{});
}

TEST_F(Snapshot, AVisitOfAFileYieldsEachOfSeveralWaypointsWithOneName)
{
    EXPECT_THAT(namesIn(recordsIn(*driver(), "/a.upt", kPlain + "\r\n" + kOld + "\r\n" + kPlain),
                        "waypoint"),
                ElementsAre("P", "Old", "P"));
}

TEST_F(Snapshot, AVisitEndsAtADamagedSentence)
{
    const auto text = support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0,M,A,,a") + "\r\n" +
                      support::sentence("PMGNWPL,4630.00000,N") + "\r\n" +
                      support::sentence("PMGNWPL,4630.00000,N,00715.00000,E,0,M,B,,a");
    EXPECT_THAT(namesIn(recordsIn(*driver(), "/a.upt", text), "waypoint"), ElementsAre("A"));
}

TEST_F(Snapshot, HasTheRecordsOfADownloadWithTheirPoints)
{
    receiver.put("My POIs/b.upt", {kOld});
    receiver.put("My POIs/sub/a.upt", {kPlain});
    receiver.put("Geocaches/c.gs", {kOak});
    receiver.put("Routes/r.rte", {kPlain, kRoute});
    const auto records = recordsIn(*driver()->takeSnapshot());
    EXPECT_THAT(namesIn(records, "waypoint"), ElementsAre("Old", "P", "Oak"));
    EXPECT_THAT(namesIn(records, "route"), ElementsAre("R"));
    const auto& first = *records.findArray("waypoint")->front().as<gps::Dictionary>();
    EXPECT_EQ(*gps::findPoint(first), (gps::GPSPoint{46.5, 7.25, 400, 0, 0}));
    EXPECT_FALSE(records.contains("track"));
}

TEST_F(Snapshot, AVisitOfChosenRecordsYieldsThemAloneAndAsksByKindAndName)
{
    receiver.put("My POIs/b.upt", {kOld, kPlain});
    receiver.put("Geocaches/c.gs", {kOak});
    receiver.put("Routes/r.rte", {kPlain, kRoute});
    std::string asked;
    VisitedRecords records;
    driver()->takeSnapshot()->visitChosenRecords(
        [&asked](std::string_view key, std::string_view name) {
            asked.append(key).append(1, ' ').append(name).append(1, '\n');
            return name == "P" || name == "R";
        },
        records.visitor());
    EXPECT_EQ(asked, "waypoint Old\nwaypoint P\nwaypoint Oak\nroute R\n");
    EXPECT_THAT(namesIn(records.get(), "waypoint"), ElementsAre("P"));
    EXPECT_THAT(namesIn(records.get(), "route"), ElementsAre("R"));
}

TEST_F(Snapshot, HasTheLastOfSeveralWaypointsWithOneNameAtThePositionOfTheFirst)
{
    receiver.put(
        "My POIs/a.upt",
        {kPlain, kOld, support::sentence("PMGNWPL,4700.00000,N,00715.00000,E,0000400,M,P,new,b")});
    const auto records = recordsIn(*driver()->takeSnapshot());
    EXPECT_THAT(namesIn(records, "waypoint"), ElementsAre("P", "Old"));
    const auto& first = *records.findArray("waypoint")->front().as<gps::Dictionary>();
    EXPECT_EQ(*first.findString("comment"), "new");
    EXPECT_EQ(gps::findPoint(first)->latitude, 47);
}

TEST_F(Snapshot, HasEachFileByteForByteButNotTracksHiddenOnesAndFolders)
{
    receiver.put("My POIs/.hidden", {kOld});
    receiver.put("My POIs/sub/.seen", {kOld});
    receiver.folder().put("My POIs/any", "caf\xE9");
    receiver.put("Track Logs/TKLG000.log", {});
    const auto snapshot = driver()->takeSnapshot();
    const auto& files = snapshot->files();
    ASSERT_THAT(files, SizeIs(2));
    EXPECT_EQ(files[0].path, receiver.path("My POIs/any"));
    EXPECT_EQ(files[0].content, "caf\xE9");
    EXPECT_EQ(files[0].error->code(), 261);
    EXPECT_EQ(files[1].path, receiver.path("My POIs/sub/.seen"));
    EXPECT_FALSE(files[1].error);
    EXPECT_THAT(snapshot->dataFolders(), SizeIs(4));
}

TEST_F(Snapshot, ADamagedFileContributesNoRecordsAndTheOthersAreComplete)
{
    receiver.put("My POIs/a.upt", {kOld, support::sentence("PMGNWPL,4630.00000,N")});
    receiver.folder().put("My POIs/b.upt", "caf\xE9");
    receiver.put("My POIs/c.upt", {kPlain});
    EXPECT_THAT(namesIn(recordsIn(*driver()->takeSnapshot()), "waypoint"), ElementsAre("P"));
}

TEST_F(Snapshot, AFolderOfTwoKindsIsReadOnceAndHasTheRecordsOfBoth)
{
    receiver.languageFile({"MyPOIs=My POIs", "Geocaches=My POIs", "Routes=My POIs"});
    receiver.put("My POIs/all", {kPlain, kOak, kRoute});
    const auto snapshot = driver()->takeSnapshot();
    EXPECT_THAT(snapshot->files(), SizeIs(1));
    EXPECT_THAT(namesIn(recordsIn(*snapshot), "waypoint"), ElementsAre("P", "Oak"));
    EXPECT_THAT(namesIn(recordsIn(*snapshot), "route"), ElementsAre("R"));
}

TEST_F(Snapshot, IncludesTheDefaultFileOfAFolderThatCannotBeListed)
{
    receiver.put("My POIs/Default POI File.upt", {kOld});
    std::filesystem::permissions(receiver.path("My POIs"), std::filesystem::perms{0333});
    {
        const support::AsNobody nobody;
        const support::LogCapture log;
        const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
        ASSERT_THAT(planned.files, SizeIs(1));
        EXPECT_EQ(planned.files[0].action, Action::kMerge);
        EXPECT_THAT(planned.files[0].content, HasSubstr(",Old,"));
    }
    std::filesystem::permissions(receiver.path("My POIs"), std::filesystem::perms{0755});
}

TEST_F(Snapshot, ADefaultFileThatIsADanglingLinkIsPlannedAsANewOne)
{
    std::filesystem::create_symlink("nowhere", receiver.path("My POIs/Default POI File.upt"));
    const auto planned = plan({{"waypoint", gps::Array{waypoint("A")}}});
    ASSERT_THAT(planned.files, SizeIs(1));
    EXPECT_EQ(planned.files[0].action, Action::kCreate);
    EXPECT_FALSE(planned.files[0].error);
}

TEST_F(Snapshot, IgnoresLaterChangesOfTheDevice)
{
    receiver.put("My POIs/Default POI File.upt", {kOld});
    const auto snapshot = driver()->takeSnapshot();
    receiver.put("My POIs/Default POI File.upt", {kPlain});
    std::filesystem::remove_all(receiver.path("USBTRANS"));
    EXPECT_THAT(namesIn(recordsIn(*snapshot), "waypoint"), ElementsAre("Old"));
    const auto planned = snapshot->planSend({{"waypoint", gps::Array{waypoint("A")}}});
    EXPECT_THAT(planned.files.at(0).content, HasSubstr(",Old,"));
}

TEST_F(Snapshot, LogsNothing)
{
    receiver.folder().put("My POIs/a.upt", "caf\xE9");
    const support::LogCapture log;
    (void)plan({{"waypoint", gps::Array{waypoint("A")}}, {"route", gps::Array{}}});
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Snapshot, WithoutADeviceItIsNull)
{
    const support::TestFolders none{{}};
    EXPECT_EQ(fileDevice()->takeSnapshot(), nullptr);
}

} // namespace
