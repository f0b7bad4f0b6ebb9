// SPDX-License-Identifier: MIT

#include "host/formats/KmlLine.h"

#include "host/formats/Written.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Times = host::KmlLine::Times;

constexpr std::int64_t kTime = 1717236000; // 2024-06-01 10:00:00 UTC

std::string lineOf(const std::vector<gps::GPSPoint>& points, Times times)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>", times);
    for (const auto& point : points)
        line.add(written.output(), point);
    line.end(written.output());
    return written.text();
}

TEST(KmlLine, WithoutPointsIsAPlacemarkWithoutGeometry)
{
    EXPECT_EQ(lineOf({}, Times::kKept), "<Placemark></Placemark>\n");
}

TEST(KmlLine, OnePointIsAPointAndTwoAreALineString)
{
    EXPECT_EQ(lineOf({{1, 2, 3, 0, 0}}, Times::kKept),
              "<Placemark><Point><coordinates>2,1,3\n</coordinates></Point></Placemark>\n");
    EXPECT_EQ(lineOf({{1, 2, 3, 0, 0}, {4, 5, 6, 0, 0}}, Times::kKept),
              "<Placemark><LineString><tessellate>1</tessellate><coordinates>\n"
              "2,1,3\n5,4,6\n</coordinates></LineString></Placemark>\n");
}

TEST(KmlLine, OneTimedPointIsATrackUnlessTimesAreDropped)
{
    EXPECT_EQ(lineOf({{1, 2, 3, kTime, 0}}, Times::kKept),
              "<Placemark><gx:Track>\n<when>2024-06-01T10:00:00Z</when>\n"
              "<gx:coord>2 1 3</gx:coord>\n</gx:Track></Placemark>\n");
    EXPECT_EQ(lineOf({{1, 2, 3, kTime, 0}}, Times::kDropped),
              "<Placemark><Point><coordinates>2,1,3\n</coordinates></Point></Placemark>\n");
}

TEST(KmlLine, BeginForgetsTheLineBefore)
{
    support::Written written;
    host::KmlLine line{written.folder()};
    line.begin("<Placemark>1", Times::kKept);
    line.add(written.output(), {0, 179, 0, 0, 0});
    line.end(written.output());
    line.begin("<Placemark>2", Times::kKept);
    line.add(written.output(), {0, -179, 0, 0, 0}); // not across the meridian: another line
    line.end(written.output());
    EXPECT_EQ(written.text(),
              "<Placemark>1<Point><coordinates>179,0,0\n</coordinates></Point></Placemark>\n"
              "<Placemark>2<Point><coordinates>-179,0,0\n</coordinates></Point></Placemark>\n");
}

} // namespace
