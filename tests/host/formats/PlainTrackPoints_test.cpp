// SPDX-License-Identifier: MIT
// Which track points are taken out of a text, and that a file reads the same with and without that.

#include "host/formats/PlainTrackPoints.h"

#include "host/formats/GpxReader.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kPlainPoint[] = "<trkpt lat=\"46.5\" lon=\"7.25\"><ele>1000</ele>"
                               "<time>2008-08-11T06:15:48Z</time></trkpt>";
constexpr char kOtherPoint[] = "<trkpt lat=\"1\" lon=\"2\"><name>A</name></trkpt>";

std::string segmentOf(std::string_view content)
{
    return "<trkseg>" + std::string{content} + "</trkseg>";
}

std::string plainTrack(std::string_view segments)
{
    return "<gpx><trk>" + std::string{segments} + "</trk></gpx>";
}

std::string describePoints(const gps::Array& points)
{
    return gps::describe(gps::Value{points});
}

// The points that are taken from one segment, as text; "[]" if the text is unchanged.
std::string takenFrom(std::string_view content)
{
    const auto before = segmentOf(content);
    auto xml = before;
    const auto taken = host::takePlainTrackPoints(xml);
    EXPECT_EQ(xml == before, taken.empty());
    return taken.empty() ? "[]" : describePoints(taken.front().points);
}

struct FileContent {
    std::string error; // its text; empty without one
    gps::Dictionary data;
};

FileContent contentOf(std::string_view bytes)
{
    static const support::TemporaryFolder folder;
    FileContent content;
    if (const auto failure = host::readGpx(folder.put("trip.gpx", bytes), content.data))
        content.error = failure->text();
    return content;
}

// With a space in each tag of a segment, no points are taken, and the file means the same.
std::string withoutPlainPoints(std::string xml)
{
    for (auto at = xml.find("<trkseg>"); at != std::string::npos; at = xml.find("<trkseg>", at))
        xml.insert(at + 7, " ");
    return xml;
}

void expectTheSame(const std::string& xml)
{
    const auto once = contentOf(xml);
    const auto other = contentOf(withoutPlainPoints(xml));
    EXPECT_EQ(once.error, other.error) << xml;
    EXPECT_EQ(once.data, other.data) << xml;
}

TEST(PlainTrackPoints, HaveCoordinatesElevationAndTime)
{
    EXPECT_EQ(takenFrom(kPlainPoint), "[{point = (46.5, 7.25, 1000, 1218435348, 0)}]");
}

TEST(PlainTrackPoints, MayLackElevationAndTimeAndHaveWhiteSpaceBetweenTags)
{
    EXPECT_EQ(takenFrom("\n <trkpt lat=\"1\" lon=\"-2\">\r\n\t</trkpt>\n"),
              "[{point = (1, -2, nan, 0, 0)}]");
    EXPECT_EQ(takenFrom("<trkpt lat=\"1\" lon=\"2\"> <ele></ele> <time>soon</time> </trkpt>"),
              "[]");
    EXPECT_EQ(takenFrom("<trkpt lat=\"1\" lon=\"2\"> <ele></ele> <time></time> </trkpt>"),
              "[{point = (1, 2, nan, 0, 0)}]");
}

TEST(PlainTrackPoints, AnyOtherFormStaysInTheText)
{
    for (const std::string_view point :
         {kOtherPoint, "<trkpt lon=\"2\" lat=\"1\"></trkpt>", "<trkpt lat='1' lon='2'></trkpt>",
          "<trkpt  lat=\"1\" lon=\"2\"></trkpt>", "<trkpt lat=\"1\" lon=\"2\"/>",
          "<trkpt lat=\"1\" lon=\"2\" a=\"\"></trkpt>", "<trkpt lat=\"1\" lon=\"2\">x</trkpt>",
          "<trkpt lat=\"91\" lon=\"2\"></trkpt>", "<trkpt lat=\"\" lon=\"2\"></trkpt>",
          "<trkpt lat=\"1 \" lon=\"2\"></trkpt>", "<trkpt lat=\"1\" lon=\"2\"></trkpt",
          "<trkpt lat=\"1\" lon=\"2\"><ele>1</ele><ele>2</ele></trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><time></time><ele>1</ele></trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><ele>1&amp;2</ele></trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><ele>1</ele", "<trkpt lat=\"1", "<trkpt", "<!---->"})
        EXPECT_EQ(takenFrom(point), "[]") << point;
}

TEST(PlainTrackPoints, AreTakenUpToTheFirstOfAnotherForm)
{
    auto xml =
        plainTrack(segmentOf(std::string{kPlainPoint} + kPlainPoint + kOtherPoint + kPlainPoint));
    const auto taken = host::takePlainTrackPoints(xml);
    ASSERT_THAT(taken, SizeIs(1));
    EXPECT_THAT(taken[0].points, SizeIs(2));
    EXPECT_EQ(xml, plainTrack(segmentOf(std::string{kOtherPoint} + kPlainPoint)));
}

TEST(PlainTrackPoints, AreFoundBehindTheTagOfTheirSegmentInTheRemainingText)
{
    auto xml = plainTrack(segmentOf(kPlainPoint) + segmentOf("") + "<name>A</name>" +
                          segmentOf(kPlainPoint));
    const auto taken = host::takePlainTrackPoints(xml);
    EXPECT_EQ(xml, plainTrack(segmentOf("") + segmentOf("") + "<name>A</name>" + segmentOf("")));
    ASSERT_THAT(taken, SizeIs(2));
    EXPECT_EQ(static_cast<std::size_t>(taken[0].segment), xml.find("trkseg>"));
    EXPECT_EQ(static_cast<std::size_t>(taken[1].segment), xml.rfind("<trkseg>") + 1);
}

TEST(PlainTrackPoints, ADocumentWithoutASegmentIsUnchanged)
{
    for (const std::string_view before : {"", "<gpx/>", "<trkse", kPlainPoint}) {
        std::string xml{before};
        EXPECT_THAT(host::takePlainTrackPoints(xml), IsEmpty());
        EXPECT_EQ(xml, before);
    }
}

TEST(ReadGpxWithPlainTrackPoints, ReadsTheSamePointsInTheSameOrder)
{
    const auto points = std::string{kPlainPoint} + "\n" + kPlainPoint;
    for (const auto& segments :
         {segmentOf(points), segmentOf(points + kOtherPoint + points),
          segmentOf(kOtherPoint + points),
          segmentOf("") + segmentOf(points) + segmentOf(kOtherPoint) + segmentOf(points)}) {
        expectTheSame(plainTrack(segments));
        EXPECT_THAT(contentOf(plainTrack(segments)).error, IsEmpty());
    }
    EXPECT_THAT(*contentOf(plainTrack(segmentOf(points + kOtherPoint))).data.findArray("track"),
                SizeIs(1));
}

TEST(ReadGpxWithPlainTrackPoints, WhatOnlyLooksLikeASegmentHasNoPoints)
{
    const auto real = "<trk>" + segmentOf(kPlainPoint) + "</trk>";
    const auto inQuotes = segmentOf("<trkpt lat=\"1\" lon=\"2\"></trkpt>");
    for (const auto& content :
         {"<!--" + segmentOf(kPlainPoint) + "-->" + real,
          real + "<!--" + segmentOf(kPlainPoint) + "-->", "<x a='" + inQuotes + "'/>" + real,
          "<?x " + segmentOf(kPlainPoint) + "?>" + real,
          "<wpt lat='1' lon='2'>" + segmentOf(kPlainPoint) + "</wpt>" + real,
          segmentOf(kPlainPoint) + real,
          "<trk xmlns='other'>" + segmentOf(kPlainPoint) + "</trk>" + real,
          "<x:trk xmlns:x='other'>" + segmentOf(kPlainPoint) + "</x:trk>" + real})
        expectTheSame("<gpx xmlns='mine'>" + content + "</gpx>");
}

TEST(ReadGpxWithPlainTrackPoints, ANameThatLooksLikeASegmentIsKept)
{
    const auto name = segmentOf(kPlainPoint);
    const auto file =
        contentOf("<gpx><trk><name><![CDATA[" + name + "]]></name>" + name + "</trk></gpx>");
    EXPECT_THAT(file.error, IsEmpty());
    ASSERT_THAT(*file.data.findArray("track"), SizeIs(1));
    const auto& track = *file.data.findArray("track")->front().as<gps::Dictionary>();
    EXPECT_EQ(*track.findString("name"), name);
    EXPECT_THAT(*track.findArray("points"), SizeIs(1));
}

TEST(ReadGpxWithPlainTrackPoints, AnErrorNamesTheLineOfTheWholeFile)
{
    const auto points = std::string{"\n"} + kPlainPoint + "\n" + kPlainPoint + "\n";
    const auto invalid = plainTrack(segmentOf(points + "<trkpt lat=\"x\" lon=\"1\"/>"));
    expectTheSame(invalid);
    EXPECT_THAT(contentOf(invalid).error, HasSubstr("line 4"));
    const auto whole = plainTrack(segmentOf(points) + segmentOf(points));
    for (std::size_t size = 0; size < whole.size(); ++size)
        expectTheSame(whole.substr(0, size));
}

TEST(ReadGpxWithPlainTrackPoints, AValueThatIsLeftOutIsNamedWithItsLineInTheWholeFile)
{
    const support::TemporaryFolder folder;
    const auto points = std::string{"\n"} + kPlainPoint + "\n" + kPlainPoint;
    const auto path = folder.put(
        "a.gpx", "<gpx><trk>" +
                     segmentOf(points + "\n<trkpt lat=\"1\" lon=\"2\"><ele>1-2</ele></trkpt>") +
                     "</trk></gpx>");
    gps::Dictionary data;
    host::UnreadParts unread;
    EXPECT_FALSE(host::readGpx(path, data, &unread));
    EXPECT_THAT(unread.values,
                testing::ElementsAre("a.gpx, line 4: an elevation is not a number of metres, "
                                     "\"1-2\", so it was left out."));
    const auto& track = *data.findArray("track")->front().as<gps::Dictionary>();
    EXPECT_THAT(*track.findArray("points"), SizeIs(3));
}

TEST(ReadGpxWithPlainTrackPoints, ASkippedWaypointIsNamedWithItsLineInTheWholeFile)
{
    const support::TemporaryFolder folder;
    const auto points = std::string{"\n"} + kPlainPoint + "\n" + kPlainPoint;
    const auto path = folder.put("a.gpx", "<gpx><trk>" + segmentOf(points) +
                                              "</trk>\n<wpt lat=\"x\" lon=\"1\"/></gpx>");
    gps::Dictionary data;
    host::UnreadParts unread;
    EXPECT_FALSE(host::readGpx(path, data, &unread));
    EXPECT_EQ(unread.waypoints, 1U);
    ASSERT_THAT(unread.firstWaypoints, SizeIs(1));
    EXPECT_THAT(unread.firstWaypoints[0].text(), HasSubstr("line 4"));
    ASSERT_THAT(*data.findArray("track"), SizeIs(1));
    const auto& track = *data.findArray("track")->front().as<gps::Dictionary>();
    EXPECT_THAT(*track.findArray("points"), SizeIs(2));
}

} // namespace
