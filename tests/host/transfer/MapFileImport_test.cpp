// SPDX-License-Identifier: MIT
// GPX, KML and KMZ files as the calls of an import.

#include "host/transfer/MapFileImport.h"

#include "host/FakeDriver.h"
#include "host/transfer/Download.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kGpx[] =
    "<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'>"
    "<wpt lat='1' lon='2'><ele>3</ele><name>A</name><sym>Flag</sym></wpt>\n"
    "<wpt lat='91' lon='2'><name>B</name></wpt>"
    "<rte><name>R</name><rtept lat='4' lon='5'><name>P</name></rtept></rte>"
    "<trk><name>T</name><trkseg><trkpt lat='6' lon='7'><ele>8</ele></trkpt></trkseg>"
    "<trkseg><trkpt lat='6' lon='8'/></trkseg></trk></gpx>";

class MapFileImport : public testing::Test {
protected:
    host::DownloadReport import(const std::string& file)
    {
        host::DownloadRequest request;
        request.sourceFiles = {file};
        request.output = {.path = folder_.path("out.jsonl"), .format = host::findFormat("jsonl")};
        return host::download(driver_, request);
    }

    const support::TemporaryFolder folder_;
    support::FakeDriver driver_;
};

TEST(MapFile, HasOneOfTheExtensionsInEitherCase)
{
    for (const auto* const file : {"a.gpx", "a.GPX", "/b.c/a.b.Gpx", ".gpx", "a.kml", "a.KMZ"})
        EXPECT_TRUE(host::isMapFile(file)) << file;
    for (const auto* const file : {"", "gpx", "a.gp", "a.gpx1", "a.gpx/b", "a.km", "a.kml.zip"})
        EXPECT_FALSE(host::isMapFile(file)) << file;
}

TEST_F(MapFileImport, BytesAreCountedBeforeTheFirstRecord)
{
    host::EventStream status;
    host::UnreadParts unread;
    const auto file = folder_.put("a.gpx", kGpx);
    std::vector<std::pair<std::size_t, std::size_t>> counts;
    ASSERT_FALSE(
        host::importMapFile(file, status, unread, [&](std::size_t done, std::size_t total) {
            EXPECT_EQ(status.transfersBegun(), 0U);
            counts.emplace_back(done, total);
        }));
    ASSERT_FALSE(counts.empty());
    EXPECT_EQ(counts.back().second, std::string_view{kGpx}.size());
    EXPECT_GT(status.transfersBegun(), 0U);
}

TEST_F(MapFileImport, RecordsAreReportedAsADriverDoes)
{
    const auto report = import(folder_.put("a.gpx", kGpx));
    EXPECT_EQ(report.received.waypoints, 1U);
    EXPECT_EQ(report.received.routes, 1U);
    EXPECT_EQ(report.received.tracks, 1U);
    EXPECT_EQ(report.received.trackPoints, 2U);
    const auto lines = folder_.read("out.partial.jsonl");
    EXPECT_THAT(lines, HasSubstr(
                           R"({"event":"startTransfer","kind":3}
{"event":"wayPoint","point":{"latitude":1,"longitude":2,"altitude":3,"time":0,"reserved":0},"extra":{"name":"A","comment":"","symbol":"Flag"}}
{"event":"endTransfer","kind":3}
{"event":"startTransfer","kind":2}
{"event":"newRoute","route":{"name":"R"}})"));
    EXPECT_THAT(lines, HasSubstr(R"({"event":"newTrack","track":{"name":"T"}}
{"event":"trackPoint","point":{"latitude":6,"longitude":7,"altitude":8,)"));
    EXPECT_THAT(lines, testing::EndsWith("{\"event\":\"gpsStateChange\",\"state\":0}\n"
                                         "{\"event\":\"result\",\"error\":null}\n"));
}

TEST_F(MapFileImport, SkippedWaypointMakesTheImportIncomplete)
{
    const auto report = import(folder_.put("a.gpx", kGpx));
    EXPECT_FALSE(report.isComplete());
    ASSERT_EQ(report.operations.size(), 1U);
    ASSERT_EQ(report.operations[0].unreadable.size(), 1U);
    EXPECT_THAT(*report.operations[0].unreadable[0].description(),
                HasSubstr("a.gpx, line 2: a <wpt> has invalid coordinates"));
}

TEST_F(MapFileImport, FileThatIsNotGpxIsAnErrorWithoutRecords)
{
    const auto report = import(folder_.put("a.gpx", "hello"));
    ASSERT_EQ(report.operations.size(), 1U);
    ASSERT_EQ(report.operations[0].errors.size(), 1U);
    EXPECT_THAT(*report.operations[0].errors[0].description(), HasSubstr("not a GPX file"));
    EXPECT_THAT(report.operations[0].received, IsEmpty());
}

TEST_F(MapFileImport, KmlFileIsReportedAsADriverDoes)
{
    const auto report = import(folder_.put(
        "a.KML", "<kml><Placemark><name>A</name><Point><coordinates>2,1,3</coordinates>"
                 "</Point></Placemark>\n<Placemark><name>T</name><LineString>"
                 "<coordinates>7,6,8 9,10</coordinates></LineString></Placemark></kml>"));
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(report.received.waypoints, 1U);
    EXPECT_EQ(report.received.tracks, 1U);
    const auto lines = folder_.read("out.jsonl");
    EXPECT_THAT(lines, HasSubstr(R"("extra":{"name":"A","comment":""}})"));
    EXPECT_THAT(lines, HasSubstr(R"({"event":"newTrack","track":{"name":"T"}}
{"event":"trackPoint","point":{"latitude":6,"longitude":7,"altitude":8,)"));
}

TEST_F(MapFileImport, SkippedPointOfAKmlFileMakesTheImportIncomplete)
{
    const auto report = import(folder_.put(
        "a.kml",
        "<kml><Placemark><Point><coordinates>2,91</coordinates></Point></Placemark></kml>"));
    ASSERT_EQ(report.operations.size(), 1U);
    ASSERT_EQ(report.operations[0].unreadable.size(), 1U);
    EXPECT_THAT(*report.operations[0].unreadable[0].description(),
                HasSubstr("a.kml, line 1: the position \"2,91\" is not valid"));
}

TEST_F(MapFileImport, SegmentsOfAGpxFileAreThoseOfTheOutput)
{
    const std::string track =
        "<trk><name>T</name><src>Old watch</src><trkseg>\n"
        "<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt>\n</trkseg><trkseg>\n"
        "<trkpt lat=\"1\" lon=\"2.5\"><time>2024-06-01T10:00:00Z</time></trkpt>\n"
        "</trkseg></trk>\n";
    host::DownloadRequest request;
    request.sourceFiles = {folder_.put("a.gpx", "<gpx>" + track + "</gpx>")};
    request.output = {.path = folder_.path("out.gpx"), .format = host::findFormat("gpx")};
    EXPECT_TRUE(host::download(driver_, request).succeeded());
    EXPECT_THAT(folder_.read("out.gpx"), HasSubstr(track));
    request.output = {.path = folder_.path("out.kml"), .format = host::findFormat("kml")};
    EXPECT_TRUE(host::download(driver_, request).succeeded());
    request.sourceFiles = {folder_.path("out.kml")};
    request.output = {.path = folder_.path("again.gpx"), .format = host::findFormat("gpx")};
    EXPECT_TRUE(host::download(driver_, request).succeeded());
    EXPECT_THAT(folder_.read("again.gpx"), HasSubstr(track));
}

TEST_F(MapFileImport, ValueThatIsLeftOutIsDamageButTheImportIsComplete)
{
    const auto report =
        import(folder_.put("a.gpx", "<gpx><wpt lat='1' lon='2'><ele>12,5</ele></wpt></gpx>"));
    EXPECT_TRUE(report.succeeded());
    EXPECT_TRUE(report.hasDamagedLines());
    EXPECT_THAT(report.operations[0].unreadValues, testing::SizeIs(1));
}

TEST_F(MapFileImport, IgnoredPolygonIsNoDamage)
{
    const auto report =
        import(folder_.put("a.kml", "<kml><Placemark><Polygon/></Placemark></kml>"));
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(report.hasDamagedLines());
    EXPECT_THAT(report.operations[0].ignored, testing::SizeIs(1));
}

TEST_F(MapFileImport, WaypointsBeyondTheNamedOnesAreCounted)
{
    std::string waypoints;
    for (int i = 0; i < 12; ++i)
        waypoints += "<wpt lat='91' lon='2'/>";
    const auto report = import(folder_.put("a.gpx", "<gpx>" + waypoints + "</gpx>"));
    EXPECT_EQ(report.operations[0].unreadable.size(), 10U);
    EXPECT_EQ(report.operations[0].moreUnreadable, 2U);
}

TEST_F(MapFileImport, StopIsAnInterruption)
{
    host::DownloadRequest request;
    request.sourceFiles = {folder_.put("a.gpx", kGpx), folder_.path("b.gpx")};
    request.stopRequested = [] { return true; };
    const auto report = host::download(driver_, request);
    EXPECT_EQ(report.operations.size(), 1U);
    EXPECT_TRUE(report.isInterrupted());
}

} // namespace
