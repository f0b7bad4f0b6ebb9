// SPDX-License-Identifier: MIT

#include "host/formats/KmlText.h"

#include <gps/Value.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>

namespace {

std::string headOf(const gps::Dictionary& record, const gps::GPSPoint* timed = nullptr)
{
    std::string out;
    host::appendKmlHead(out, record, "track", timed);
    return out;
}

std::string extendedDataOf(const gps::Dictionary& record)
{
    std::string data;
    host::appendKmlData(data, record);
    std::string out;
    host::appendExtendedData(out, data);
    return out;
}

std::string positionOf(const gps::GPSPoint& point, char separator)
{
    std::array<char, host::kMostOfKmlPosition> text;
    return {text.data(), host::putKmlPosition(text.data(), point, separator)};
}

TEST(KmlText, PositionIsLongitudeLatitudeAndAltitude)
{
    EXPECT_EQ(positionOf({1.5, -2.25, 1e8, 0, 0}, ' '), "-2.25 1.5 100000000");
}

TEST(KmlText, AltitudeThatIsNotStatedIsLeftOut)
{
    for (const double altitude : {1.1e8, std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(positionOf({1, 2, altitude, 0, 0}, ','), "2,1");
    }
}

TEST(KmlText, LongestPositionFitsItsRoom)
{
    const double smallest = -std::numeric_limits<double>::denorm_min();
    EXPECT_LE(positionOf({-89.123456789, -179.123456789, smallest, 0, 0}, ',').size(),
              host::kMostOfKmlPosition);
    const double largest = std::numeric_limits<double>::lowest();
    EXPECT_LE(positionOf({-89.123456789, -179.123456789, largest, 0, 0}, ',').size(),
              host::kMostOfKmlPosition);
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
              "<styleUrl>#track</styleUrl>");
}

TEST(KmlText, DataAreAllFieldsButTheName)
{
    EXPECT_EQ(extendedDataOf({{"number", 7}, {"comment", "a<b"}, {"name", "N"}}),
              "<ExtendedData><Data name=\"number\"><value>7</value></Data>"
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
    EXPECT_EQ(extendedDataOf({{"point", gps::GPSPoint{}}, {"symbol", ""}}), "");
}

} // namespace
