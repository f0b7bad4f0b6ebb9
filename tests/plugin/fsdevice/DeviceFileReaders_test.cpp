// SPDX-License-Identifier: MIT
// Each reader on files with good, damaged and foreign lines, and on files that cannot be read.

#include <plugin/codec/RouteSentence.h>
#include <plugin/common/FolderWalk.h>
#include <plugin/fsdevice/DeviceFileReaders.h>
#include <support/AsNobody.h>
#include <support/LogCapture.h>
#include <support/RecordingReceiver.h>
#include <support/Sentence.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace magellan {
namespace {

using support::kClosing;
using support::sentence;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Calls = std::vector<std::string>;

/// A point at noon of a day without a date, on the given track.
std::string trackPoint(std::string_view name, std::string_view degrees = "46")
{
    return sentence("PMGNTRK," + std::string{degrees} +
                    "00.000,N,00730.000,E,00500,M,120000.00,A," + std::string{name});
}

std::string wayPoint(std::string_view name, std::string_view comment = "")
{
    return sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M," + std::string{name} + "," +
                    std::string{comment} + ",c");
}

std::string geoCache(std::string_view name, std::string_view hint = "")
{
    return sentence("PMGNGEO,4600.000,N,00730.000,E,0000500,M," + std::string{name} + ",,," +
                    std::string{hint} + ",,,,,");
}

class DeviceFileReadersTest : public testing::Test {
protected:
    std::string put(std::initializer_list<std::string_view> lines) const
    {
        return folder_.put("file", support::fileOf(lines));
    }

    /// The calls of a reader for a file that it can read.
    static Calls reported(Reader reader, const std::string& path)
    {
        support::RecordingReceiver status;
        EXPECT_EQ(reader(status, path, nullptr), std::nullopt);
        return status.calls();
    }

    support::TemporaryFolder folder_;
};

using ReadTracks = DeviceFileReadersTest;
using ReadWayPoints = DeviceFileReadersTest;
using ReadRoutes = DeviceFileReadersTest;
using ReadGeoCaches = DeviceFileReadersTest;

constexpr char kUnnamed46[] = "trackPoint (46, 7.5, 500, 43200, 0) {}";

std::string named46(const std::string& name)
{
    return "trackPoint (46, 7.5, 500, 43200, 0) {trackName = \"" + name + "\"}";
}

std::string newTrack(const std::string& name)
{
    return "newTrack {name = \"" + name + "\"}";
}

TEST_F(ReadTracks, PointsWithoutANameAreOneCurrentTrack)
{
    EXPECT_THAT(reported(acquireTracks, put({trackPoint(""), trackPoint("", "47"), kClosing})),
                ElementsAre(newTrack("Current Track"), kUnnamed46,
                            "trackPoint (47, 7.5, 500, 43200, 0) {}"));
}

TEST_F(ReadTracks, ConsecutiveNamesABAMakeThreeTracks)
{
    EXPECT_THAT(reported(acquireTracks,
                         put({trackPoint("A"), trackPoint("A"), trackPoint("B"), trackPoint("A")})),
                ElementsAre(newTrack("A"), named46("A"), named46("A"), newTrack("B"), named46("B"),
                            newTrack("A"), named46("A")));
}

TEST_F(ReadTracks, PointsWithoutANameBelongToTheTrackInProgress)
{
    EXPECT_THAT(reported(acquireTracks, put({trackPoint("A"), trackPoint(""), trackPoint("A")})),
                ElementsAre(newTrack("A"), named46("A"), kUnnamed46, named46("A")));
}

TEST_F(ReadTracks, ANameAfterUnnamedPointsBeginsATrackUnlessTheTrackHasThatName)
{
    EXPECT_THAT(reported(acquireTracks, put({trackPoint(""), trackPoint("A")})),
                ElementsAre(newTrack("Current Track"), kUnnamed46, newTrack("A"), named46("A")));
    EXPECT_THAT(reported(acquireTracks, put({trackPoint(""), trackPoint("Current Track")})),
                ElementsAre(newTrack("Current Track"), kUnnamed46, named46("Current Track")));
}

TEST_F(ReadTracks, ALineWithoutADateTakesItsDayFromThePreviousLineIfAny)
{
    EXPECT_THAT(reported(acquireTracks,
                         put({trackPoint(""),
                              sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,235959,A,,290208"),
                              trackPoint("")})),
                ElementsAre(newTrack("Current Track"), kUnnamed46,
                            "trackPoint (46, 7.5, 500, 1204329599, 0) {}",
                            "trackPoint (46, 7.5, 500, 1204286400, 0) {}"));
    EXPECT_THAT(reported(acquireTracks, put({trackPoint("")})),
                ElementsAre(newTrack("Current Track"), kUnnamed46));
}

TEST_F(ReadTracks, OtherLinesAreIgnored)
{
    EXPECT_THAT(reported(acquireTracks,
                         put({"", "garbage", wayPoint("W"), support::breakChecksum(trackPoint("X")),
                              "$", trackPoint("A"), "", kClosing, "$PMGNTRK,46"})),
                ElementsAre(newTrack("A"), named46("A")));
}

TEST_F(ReadTracks, AFileOfBareLineFeedsIsOneLine)
{
    EXPECT_THAT(
        reported(acquireTracks, folder_.put("f", trackPoint("A") + "\n" + trackPoint("A") + "\n")),
        IsEmpty());
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", trackPoint("A") + "\n")),
                ElementsAre(newTrack("A"), named46("A")));
}

TEST_F(ReadTracks, AFileThatEndsInALineEndHasAnEmptyLastLineThatIsIgnored)
{
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", trackPoint("A") + "\r\n")),
                ElementsAre(newTrack("A"), named46("A")));
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", trackPoint("A"))),
                ElementsAre(newTrack("A"), named46("A")));
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", "\r\n")), IsEmpty());
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", "")), IsEmpty());
}

TEST_F(ReadTracks, ANulByteDamagesOnlyItsOwnLine)
{
    EXPECT_THAT(reported(acquireTracks, folder_.put("f", std::string{"\0", 1} + trackPoint("A") +
                                                             "\r\n" + trackPoint("B"))),
                ElementsAre(newTrack("B"), named46("B")));
}

TEST_F(ReadTracks, ATruncatedSentenceThrowsAfterThePointsBeforeItWereReported)
{
    support::RecordingReceiver status;
    const auto path =
        put({trackPoint("A"), sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M"), trackPoint("A")});
    EXPECT_THROW(acquireTracks(status, path), gps::RangeError);
    EXPECT_THAT(status.calls(), ElementsAre(newTrack("A"), named46("A")));
}

/// The point of every waypoint and geocache here, with its time.
constexpr char kPointText[] = "(46, 7.5, 500, 0, 0)";

std::string reportedWayPoint(const std::string& name, const std::string& comment = "")
{
    return std::string{"wayPoint "} + kPointText + " {name = \"" + name + "\", comment = \"" +
           comment + "\", symbol = \"Residence\"}";
}

TEST_F(ReadWayPoints, AreReportedInFileOrderWithoutTheirPointAmongTheExtras)
{
    EXPECT_THAT(reported(acquireWayPoints, put({wayPoint("B"), wayPoint("A"), kClosing})),
                ElementsAre(reportedWayPoint("B"), reportedWayPoint("A")));
}

TEST_F(ReadWayPoints, TwoOfOneNameAreOneCallWithTheSecondRecordAtTheFirstOnesPosition)
{
    EXPECT_THAT(reported(acquireWayPoints,
                         put({wayPoint("A", "first"), wayPoint("B"), wayPoint("A", "second")})),
                ElementsAre(reportedWayPoint("A", "second"), reportedWayPoint("B")));
}

TEST_F(ReadWayPoints, OneWithoutANameIsSkippedAndOneWithAnEmptyNameIsNot)
{
    EXPECT_THAT(reported(acquireWayPoints,
                         put({sentence("PMGNWPL,4600.000,N,00730.000,E,0000500"), wayPoint("")})),
                ElementsAre(reportedWayPoint("")));
}

TEST_F(ReadWayPoints, AKeyOfOneLineDoesNotReachTheNext)
{
    EXPECT_THAT(
        reported(acquireWayPoints,
                 put({wayPoint("A"), sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M,B,")})),
        ElementsAre(reportedWayPoint("A"),
                    std::string{"wayPoint "} + kPointText + " {name = \"B\", comment = \"\"}"));
}

TEST_F(ReadWayPoints, ATruncatedSentenceThrowsBeforeAnythingIsReported)
{
    support::RecordingReceiver status;
    const auto path = put({wayPoint("A"), sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M")});
    EXPECT_THROW((void)acquireWayPoints(status, path), gps::RangeError);
    EXPECT_THAT(status.calls(), IsEmpty());
}

TEST_F(ReadWayPoints, OtherLinesAreIgnoredAndBareLineFeedsMakeOneLine)
{
    EXPECT_THAT(
        reported(acquireWayPoints, put({"", trackPoint("T"), geoCache("G"),
                                        support::breakChecksum(wayPoint("X")), wayPoint("A")})),
        ElementsAre(reportedWayPoint("A")));
    EXPECT_THAT(reported(acquireWayPoints, folder_.put("f", wayPoint("A") + "\n" + wayPoint("B"))),
                IsEmpty());
}

TEST_F(ReadWayPoints, CollectedOnesHaveTheirPointAndReplaceThoseOfTheSameName)
{
    gps::Dictionary records{{"A", gps::Dictionary{{"name", "A"}, {"old", 1}}},
                            {"Z", gps::Dictionary{{"name", "Z"}}}};
    EXPECT_EQ(acquireWayPointsFromPath(put({wayPoint("B"), wayPoint("A", "new")}), records),
              std::nullopt);
    EXPECT_EQ(gps::describe(records),
              "{A = {name = \"A\", comment = \"new\", symbol = \"Residence\", point = (46, 7.5, "
              "500, 0, 0)}, Z = {name = \"Z\"}, "
              "B = {name = \"B\", comment = \"\", symbol = \"Residence\", point = (46, 7.5, 500, "
              "0, 0)}}");
}

TEST_F(ReadWayPoints, AreCollectedAsTheyAreReported)
{
    const auto path = put({wayPoint("A", "first"), wayPoint("B"), wayPoint("A", "second"),
                           sentence("PMGNWPL,4600.000,N,00730.000,E,0000500"), wayPoint("")});
    gps::Dictionary records;
    ASSERT_EQ(acquireWayPointsFromPath(path, records), std::nullopt);
    Calls calls;
    for (const auto& entry : records)
        calls.push_back(
            reportedWayPoint(entry.key, *entry.value.as<gps::Dictionary>()->findString("comment")));
    EXPECT_EQ(reported(acquireWayPoints, path), calls);
}

std::string reportedGeoCache(const std::string& name, const std::string& hint = "")
{
    return std::string{"wayPoint "} + kPointText + " {name = \"" + name +
           "\", comment = \"\", geocacheOwner = \"\", geocacheHint = \"" + hint +
           "\", geocacheType = \"\", datePlaced = \"\", dateFound = \"\", difficulty = \"\", "
           "terrain = \"\", symbol = "
           "\"Geocache\"}";
}

TEST_F(ReadGeoCaches, AreReportedAsWaypointsInFileOrder)
{
    EXPECT_THAT(
        reported(acquireGeoCaches, put({geoCache("B"), wayPoint("W"), geoCache("A"), kClosing})),
        ElementsAre(reportedGeoCache("B"), reportedGeoCache("A")));
}

TEST_F(ReadGeoCaches, TwoOfOneNameAreOneCallWithTheSecondRecord)
{
    EXPECT_THAT(reported(acquireGeoCaches,
                         put({geoCache("A", "first"), geoCache("B"), geoCache("A", "second")})),
                ElementsAre(reportedGeoCache("A", "second"), reportedGeoCache("B")));
}

TEST_F(ReadGeoCaches, ATruncatedSentenceThrowsBeforeAnythingIsReported)
{
    support::RecordingReceiver status;
    const auto path = put({geoCache("A"), sentence("PMGNGEO,4600.000,N,00730.000,E,0000500")});
    EXPECT_THROW((void)acquireGeoCaches(status, path), gps::RangeError);
    EXPECT_THAT(status.calls(), IsEmpty());
}

TEST_F(ReadGeoCaches, CollectedOnesAreKeyedByNameAndKeepTheirPoint)
{
    gps::Dictionary records;
    EXPECT_EQ(acquireGeoCachesFromPath(put({geoCache("A")}), records), std::nullopt);
    ASSERT_TRUE(records.contains("A"));
    EXPECT_NE(gps::findPoint(*records.findDictionary("A")), nullptr);
}

std::string routePoint(const std::string& name)
{
    return std::string{"wayPoint "} + kPointText + " {name = \"" + name +
           "\", comment = \"\", symbol = \"Residence\", point = " + kPointText + "}";
}

TEST_F(ReadRoutes, ARouteIsReportedWithoutItsPointsWhichFollowWithTheirPoint)
{
    EXPECT_THAT(reported(acquireRoutes, put({wayPoint("A"), wayPoint("B"), wayPoint("unused"),
                                             sentence("PMGNRTE,2,1,c,1,Loop,B,a,A,a"),
                                             sentence("PMGNRTE,2,2,m,1,Loop,hello"), kClosing})),
                ElementsAre("newRoute {name = \"Loop\", lastIndex = 2, comment = \"hello\"}",
                            routePoint("B"), routePoint("A")));
}

TEST_F(ReadRoutes, EachStartsEmptyAndTheyAreReportedInFileOrder)
{
    EXPECT_THAT(
        reported(acquireRoutes,
                 put({wayPoint("A"), sentence("PMGNRTE,2,1,c,1,R2,A,a"),
                      sentence("PMGNRTE,2,2,m,1,R2,hello"), sentence("PMGNRTE,1,1,c,1,R1,A,a")})),
        ElementsAre("newRoute {name = \"R2\", lastIndex = 2, comment = \"hello\"}", routePoint("A"),
                    "newRoute {name = \"R1\", lastIndex = 1}", routePoint("A")));
}

TEST_F(ReadRoutes, OneWithoutItsLastSentenceIsDropped)
{
    EXPECT_THAT(
        reported(acquireRoutes, put({wayPoint("A"), sentence("PMGNRTE,2,1,c,1,R,A,a"), kClosing})),
        IsEmpty());
}

TEST_F(ReadRoutes, OfTwoOfOneNameTheLastWins)
{
    EXPECT_THAT(reported(acquireRoutes,
                         put({wayPoint("A"), wayPoint("B"), sentence("PMGNRTE,1,1,c,1,R,A,a"),
                              sentence("PMGNRTE,1,1,c,1,R,B,a")})),
                ElementsAre("newRoute {name = \"R\", lastIndex = 1}", routePoint("B")));
}

TEST_F(ReadRoutes, WaypointsAfterTheRouteAreNotFoundForItsNames)
{
    const support::LogCapture log;
    EXPECT_THAT(reported(acquireRoutes, put({sentence("PMGNRTE,1,1,c,1,R,A,a"), wayPoint("A")})),
                ElementsAre("newRoute {name = \"R\", lastIndex = 1}"));
    EXPECT_THAT(log.lines(), ElementsAre("referencing A waypoint that doesn't exist"));
}

TEST_F(ReadRoutes, AWaypointWithoutANameIsSkippedAndTheRouteContinues)
{
    EXPECT_THAT(reported(acquireRoutes, put({sentence("PMGNWPL,4600.000,N,00730.000,E,0000500"),
                                             wayPoint("A"), sentence("PMGNRTE,1,1,c,1,R,A,a")})),
                ElementsAre("newRoute {name = \"R\", lastIndex = 1}", routePoint("A")));
}

TEST_F(ReadRoutes, AWaypointInheritsNothingFromTheLineBeforeIt)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    EXPECT_EQ(acquireRoutesFromPath(put({wayPoint("A", "comment"),
                                         sentence("PMGNWPL,4700.000,N,00730.000,E,0000500,M,B,"),
                                         sentence("PMGNWPL,4800.000,N,00730.000,E,0000500")}),
                                    waypoints, routes),
              std::nullopt);
    ASSERT_THAT(waypoints, SizeIs(2));
    EXPECT_FALSE(waypoints.findDictionary("B")->contains("symbol"));
    EXPECT_EQ(gps::findPoint(*waypoints.findDictionary("A"))->latitude, 46);
}

TEST_F(ReadRoutes, WaypointsBetweenARoutesSentencesDoNotDisturbIt)
{
    EXPECT_THAT(
        reported(acquireRoutes, put({wayPoint("A"), sentence("PMGNRTE,2,1,c,1,R,A,a"),
                                     wayPoint("B"), "", sentence("PMGNRTE,2,2,c,1,R,B,a")})),
        ElementsAre("newRoute {name = \"R\", lastIndex = 2}", routePoint("A"), routePoint("B")));
}

TEST_F(ReadRoutes, ATruncatedSentenceThrowsBeforeAnythingIsReported)
{
    support::RecordingReceiver status;
    const auto path =
        put({wayPoint("A"), sentence("PMGNRTE,1,1,c,1,R,A,a"), sentence("PMGNRTE,1,1,c,1")});
    EXPECT_THROW(acquireRoutes(status, path), gps::RangeError);
    EXPECT_THAT(status.calls(), IsEmpty());
}

/// Counts waypoints instead of storing them.
class CountingReceiver : public support::RecordingReceiver {
public:
    void wayPoint(const gps::GPSPoint& /*point*/, const gps::Dictionary& /*extra*/) override
    {
        ++count_;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    std::size_t count_ = 0;
};

TEST_F(ReadRoutes, ShareTheRecordsOfTheirWaypoints)
{
    constexpr std::size_t kComment = 4 << 20;
    constexpr std::size_t kMentions = 4096; // copies of the record would take 16 GiB
    std::string mentions = "PMGNRTE,1,1,c,1,R";
    for (std::size_t i = 0; i < kMentions; ++i)
        mentions += ",A,a";
    const auto path = put({wayPoint("A", std::string(kComment, 'x')), sentence(mentions)});
    CountingReceiver counting;
    EXPECT_EQ(acquireRoutes(counting, path), std::nullopt);
    EXPECT_EQ(counting.count(), kMentions);
}

TEST_F(ReadRoutes, CollectedOnesShareTheRecordsOfTheirWaypoints)
{
    constexpr std::size_t kMentions = 4096; // copies of the record would take 16 GiB
    std::string mentions = "PMGNRTE,1,1,c,1,R";
    for (std::size_t i = 0; i < kMentions; ++i)
        mentions += ",A,a";
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    collectRoutes(wayPoint("A", std::string(4 << 20, 'x')) + "\r\n" + sentence(mentions), waypoints,
                  routes);
    ASSERT_NE(routes.findDictionary("R"), nullptr);
    EXPECT_EQ(routes.findDictionary("R")->findArray("points")->size(), kMentions);
}

TEST_F(ReadRoutes, CollectedOnesHoldTheirPointsInOrder)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    EXPECT_EQ(acquireRoutesFromPath(
                  put({wayPoint("A"), wayPoint("B"), sentence("PMGNRTE,1,1,c,1,R,B,a,A,a")}),
                  waypoints, routes),
              std::nullopt);
    EXPECT_EQ(waypoints.size(), 2U);
    ASSERT_NE(routes.findDictionary("R"), nullptr);
    const auto* points = routes.findDictionary("R")->find("points")->as<gps::Array>();
    ASSERT_THAT(*points, SizeIs(2));
    EXPECT_EQ(points->front(), *waypoints.find("B"));
    EXPECT_EQ(points->back(), *waypoints.find("A"));
}

struct Kind {
    Reader reader;
    std::string_view message;
    bool returnsTheError;
};

constexpr Kind kKinds[]{
    {acquireTracks, "Couldn't read track data from device", false},
    {acquireWayPoints, "Couldn't read waypoint data from device", true},
    {acquireRoutes, "Couldn't read route data from device", false},
    {acquireGeoCaches, "Couldn't read geocache data from device", true},
};

/// Runs each kind's reader on a path that it cannot read.
void expectUnreadable(const std::string& path, int code)
{
    for (const auto& [reader, message, returnsTheError] : kKinds) {
        SCOPED_TRACE(message);
        support::RecordingReceiver status;
        const support::LogCapture log;
        const auto error = reader(status, path, nullptr);
        ASSERT_EQ(error.has_value(), returnsTheError);
        if (error) {
            EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
            EXPECT_EQ(error->code(), code);
        }
        EXPECT_THAT(status.calls(), IsEmpty());
        EXPECT_THAT(log.lines(), ElementsAre(StartsWith("MagellanGPSPlugin: ")));
        ASSERT_THAT(log.errors(), SizeIs(1));
        const auto reported = log.errors().front();
        EXPECT_EQ(reported.domain(), "com.Orvane.GPSPlugin.ErrorDomain");
        EXPECT_EQ(reported.code(), -3);
        EXPECT_EQ(reported.description(), message);
        EXPECT_EQ(reported.suggestion(), "Please make sure your Magellan device is connected and "
                                         "mounted on the desktop, and try again");
        EXPECT_EQ(reported.path(), path);
        const auto* underlying = reported.userInfo().findDictionary(gps::kErrorUnderlyingKey);
        ASSERT_NE(underlying, nullptr);
        EXPECT_EQ(underlying->find("code")->int32Reading(), code);
    }
}

using UnreadableFile = DeviceFileReadersTest;

TEST_F(UnreadableFile, OneThatIsMissingIsLoggedAndReportsNothing)
{
    expectUnreadable(folder_.path("none"), 260);
}

TEST_F(UnreadableFile, OneThatIsNotAsciiIsLoggedAndReportsNothing)
{
    expectUnreadable(folder_.put("f", trackPoint("A") + "\r\n" + wayPoint("A") + "\r\n\xC3\xA9"),
                     261);
}

TEST_F(UnreadableFile, AFolderOrAFifoIsLoggedAtOnce)
{
    expectUnreadable(folder_.path(), 256);
    ASSERT_EQ(::mkfifo(folder_.path("fifo").c_str(), 0600), 0);
    expectUnreadable(folder_.path("fifo"), 256);
}

TEST_F(UnreadableFile, ADanglingOrCircularLinkIsLogged)
{
    std::filesystem::create_symlink("nowhere", folder_.path("dangling"));
    expectUnreadable(folder_.path("dangling"), 260);
    std::filesystem::create_symlink("self", folder_.path("self"));
    expectUnreadable(folder_.path("self"), 256);
}

TEST_F(UnreadableFile, OneWithoutReadPermissionIsLoggedAndReportsNothing)
{
    const auto path = put({wayPoint("A")});
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const support::AsNobody nobody;
    expectUnreadable(path, 257);
}

TEST_F(UnreadableFile, TheCollectingReadersAddNothingToTheirDictionaries)
{
    gps::Dictionary records{{"old", 1}};
    EXPECT_TRUE(acquireWayPointsFromPath(folder_.path("none"), records));
    EXPECT_TRUE(acquireGeoCachesFromPath(folder_.path("none"), records));
    EXPECT_FALSE(acquireRoutesFromPath(folder_.path("none"), records, records));
    EXPECT_EQ(gps::describe(records), "{old = 1}");
}

TEST_F(DeviceFileReadersTest, ALinkToARegularFileIsReadThrough)
{
    (void)put({wayPoint("A")});
    std::filesystem::create_symlink("file", folder_.path("link"));
    EXPECT_THAT(reported(acquireWayPoints, folder_.path("link")),
                ElementsAre(reportedWayPoint("A")));
}

} // namespace
} // namespace magellan
