// SPDX-License-Identifier: MIT

#include "host/formats/KmlLine.h"

#include "host/Numbers.h"
#include "host/formats/Written.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using KmlTimes = host::KmlLine::Times;
using support::kTen;

// The extended data of a track whose runs have to be noted.
std::string runsData(const std::string& runs, const std::string& others = "")
{
    return "<ExtendedData>" + others + "<own:trackRuns xmlns:own=\"urn:magellangps:kml\">" + runs +
           "</own:trackRuns></ExtendedData>";
}

std::string placemarkOf(const std::vector<gps::GPSPoint>& points, KmlTimes times)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>", "", times);
    for (const auto& point : points)
        line.add(point);
    line.end(written.output());
    return written.text();
}

TEST(KmlLine, WithoutPointsIsAPlacemarkWithoutGeometry)
{
    EXPECT_EQ(placemarkOf({}, KmlTimes::kKept), "<Placemark>" + runsData("") + "</Placemark>\n");
    EXPECT_EQ(placemarkOf({}, KmlTimes::kDropped), "<Placemark></Placemark>\n");
}

TEST(KmlLine, OnePointIsALineStringOfTwoPositionsSinceALineHasTwo)
{
    EXPECT_EQ(placemarkOf({{1, 2, 3, 0, 0}}, KmlTimes::kKept),
              "<Placemark>" + runsData("new-last") +
                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                  "2,1,3\n2,1,3\n</coordinates></LineString></Placemark>\n");
    EXPECT_EQ(placemarkOf({{1, 2, 3, 0, 0}, {4, 5, 6, 0, 0}}, KmlTimes::kKept),
              "<Placemark>" + runsData("new") +
                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                  "2,1,3\n5,4,6\n</coordinates></LineString></Placemark>\n");
}

TEST(KmlLine, OneTimedPointIsATrackUnlessTimesAreDropped)
{
    EXPECT_EQ(placemarkOf({{1, 2, 3, kTen, 0}}, KmlTimes::kKept),
              "<Placemark><gx:Track>\n<when>2024-06-01T10:00:00Z</when>\n"
              "<gx:coord>2 1 3</gx:coord>\n</gx:Track></Placemark>\n");
    EXPECT_EQ(placemarkOf({{1, 2, 3, kTen, 0}}, KmlTimes::kDropped),
              "<Placemark><LineString><tessellate>1</tessellate><coordinates>\n"
              "2,1,3\n2,1,3\n</coordinates></LineString></Placemark>\n");
}

TEST(KmlLine, TrackOfTimedSegmentsIsAMultiTrack)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>", "", KmlTimes::kKept);
    line.breakHere(); // before the first point
    line.add({1, 2, 3, kTen, 0});
    line.breakHere();
    line.add({4, 5, 6, kTen + 1, 0});
    line.end(written.output());
    EXPECT_EQ(written.text(), "<Placemark><gx:MultiTrack>\n"
                              "<gx:Track>\n<when>2024-06-01T10:00:00Z</when>\n"
                              "<gx:coord>2 1 3</gx:coord>\n</gx:Track>\n"
                              "<gx:Track>\n<when>2024-06-01T10:00:01Z</when>\n"
                              "<gx:coord>5 4 6</gx:coord>\n</gx:Track>\n"
                              "</gx:MultiTrack></Placemark>\n");
}

TEST(KmlLine, PointWithoutATimeIsAPieceOfLineBetweenItsNeighbours)
{
    EXPECT_EQ(
        placemarkOf({{1, 2, 3, kTen, 0}, {4, 5, 6, 0, 0}, {7, 8, 9, kTen + 1, 0}}, KmlTimes::kKept),
        "<Placemark>" + runsData("new more-first-last more") +
            "<MultiGeometry>\n"
            "<gx:Track>\n<when>2024-06-01T10:00:00Z</when>\n"
            "<gx:coord>2 1 3</gx:coord>\n</gx:Track>\n"
            "<LineString><tessellate>1</tessellate><coordinates>\n"
            "2,1,3\n5,4,6\n8,7,9\n</coordinates></LineString>\n"
            "<gx:Track>\n<when>2024-06-01T10:00:01Z</when>\n"
            "<gx:coord>8 7 9</gx:coord>\n</gx:Track>\n"
            "</MultiGeometry></Placemark>\n");
}

TEST(KmlLine, UntimedSegmentOfOnePointIsALineOfTwoPositions)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>", "", KmlTimes::kKept);
    for (const double latitude : {1, 4}) {
        line.add({latitude, 2, 3, 0, 0});
        line.breakHere();
    }
    line.end(written.output());
    EXPECT_EQ(written.text(), "<Placemark>" + runsData("new-last new-last") +
                                  "<MultiGeometry>\n"
                                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                                  "2,1,3\n2,1,3\n</coordinates></LineString>\n"
                                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                                  "2,4,3\n2,4,3\n</coordinates></LineString>\n"
                                  "</MultiGeometry></Placemark>\n");
}

TEST(KmlLine, LineWithoutATimeOnOneSideOfTheDateLineIsCutThere)
{
    const auto text = placemarkOf({{0, 179, 0, kTen, 0}, {2, -179, 0, 0, 0}}, KmlTimes::kKept);
    EXPECT_NE(text.find("<coordinates>\n179,0,0\n180,1,0\n</coordinates>"), text.npos) << text;
    EXPECT_NE(text.find("<coordinates>\n-180,1,0\n-179,2,0\n</coordinates>"), text.npos) << text;
}

TEST(KmlLine, RunsAreNotedOnlyWhereTheyAreNotObvious)
{
    const gps::GPSPoint plain{1, 2, 3, 0, 0};
    EXPECT_EQ(placemarkOf({plain, plain, plain}, KmlTimes::kKept).find("trackRuns"),
              std::string::npos);
    EXPECT_NE(placemarkOf({plain, plain}, KmlTimes::kKept).find(">new</own:trackRuns>"),
              std::string::npos);
    const auto across = placemarkOf({{0, 179, 0, kTen, 0}, {2, -179, 0, kTen, 0}}, KmlTimes::kKept);
    EXPECT_NE(across.find(">new-last more-first</own:trackRuns>"), std::string::npos) << across;
}

TEST(KmlLine, BeginForgetsTheLineBefore)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>1", "", KmlTimes::kKept);
    line.add({0, 179, 0, 0, 0});
    line.end(written.output());
    line.begin("<Placemark>2", "<Data/>", KmlTimes::kKept);
    line.add({0, -179, 0, 0, 0}); // not across the meridian: another line
    line.end(written.output());
    EXPECT_EQ(written.text(), "<Placemark>1" + runsData("new-last") +
                                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                                  "179,0,0\n179,0,0\n</coordinates></LineString></Placemark>\n"
                                  "<Placemark>2" +
                                  runsData("new-last", "<Data/>") +
                                  "<LineString><tessellate>1</tessellate><coordinates>\n"
                                  "-179,0,0\n-179,0,0\n</coordinates></LineString></Placemark>\n");
}

} // namespace
