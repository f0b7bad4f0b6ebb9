// SPDX-License-Identifier: MIT

#include "host/formats/KmlText.h"

#include <gps/Value.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

std::string headOf(const gps::Dictionary& record, const gps::GPSPoint* timed = nullptr)
{
    std::string out;
    host::appendKmlHead(out, record, "track", timed);
    return out;
}

TEST(KmlText, PositionIsLongitudeLatitudeAndAltitude)
{
    std::string out;
    host::appendKmlPosition(out, {1.5, -2.25, 1e22, 0, 0}, ' ');
    EXPECT_EQ(out, "-2.25 1.5 10000000000000000000000");
}

TEST(KmlText, AltitudeThatIsNotFiniteIsLeftOut)
{
    for (const double altitude :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        std::string out;
        host::appendKmlPosition(out, {1, 2, altitude, 0, 0}, ',');
        EXPECT_EQ(out, "2,1");
    }
}

TEST(KmlText, NameIsLeftOutWhenMissingOrEmpty)
{
    std::string out;
    host::appendKmlName(out, {});
    host::appendKmlName(out, {{"name", ""}});
    EXPECT_EQ(out, "");
    host::appendKmlName(out, {{"name", "A<B"}});
    EXPECT_EQ(out, "<name>A&lt;B</name>");
}

TEST(KmlText, HeadHasItsPartsInTheOrderOfTheSchema)
{
    const gps::GPSPoint timed{0, 0, 0, 1717236000, 0};
    EXPECT_EQ(headOf({{"number", 7}, {"comment", "a<b"}, {"name", "N"}}, &timed),
              "<Placemark><name>N</name><description>a&amp;lt;b</description>"
              "<TimeStamp><when>2024-06-01T10:00:00Z</when></TimeStamp>"
              "<styleUrl>#track</styleUrl><ExtendedData>"
              "<Data name=\"number\"><value>7</value></Data>"
              "<Data name=\"comment\"><value>a&lt;b</value></Data></ExtendedData>");
}

TEST(KmlText, HeadWithoutATimestampHasNoTime)
{
    const gps::GPSPoint before1980{0, 0, 0, 315532799, 0};
    EXPECT_EQ(headOf({}, &before1980), "<Placemark><styleUrl>#track</styleUrl>");
    EXPECT_EQ(headOf({}), "<Placemark><styleUrl>#track</styleUrl>");
}

TEST(KmlText, DataLeavesOutPointsAndEmptyTexts)
{
    EXPECT_EQ(headOf({{"point", gps::GPSPoint{}}, {"symbol", ""}}),
              "<Placemark><styleUrl>#track</styleUrl>");
}

} // namespace
