// SPDX-License-Identifier: MIT
// The fields that three sentence kinds begin with, with the bounds of coordinates and altitudes.

#include <gps/Error.h>
#include <gps/Value.h>
#include <plugin/codec/PositionFields.h>
#include <plugin/codec/SentenceFields.h>
#include <support/Sentence.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace magellan {
namespace {

constexpr char kPositionBody[] = "X,4630.000,S,00730.000,W,-12.5";

TEST(ReadPosition, ReadsFieldsOneToFive)
{
    gps::GPSPoint point{1, 2, 3, 4, 5};
    readPosition(SentenceFields{kPositionBody}, point);
    EXPECT_EQ(gps::describe(point), "(-46.5, -7.5, -12.5, 4, 5)");
}

TEST(ReadPosition, FewerThanSixFieldsThrowAndChangeNothing)
{
    for (std::size_t count = 1; count < kPositionFields; ++count) {
        gps::GPSPoint point{1, 2, 3, 4, 5};
        const auto body = support::firstFields(kPositionBody, count);
        EXPECT_THROW(readPosition(SentenceFields{body}, point), gps::RangeError) << count;
        EXPECT_EQ(point, (gps::GPSPoint{1, 2, 3, 4, 5})) << count;
    }
}

TEST(ReadPosition, AnAltitudeThatIsNotANumberIsZero)
{
    gps::GPSPoint point{1, 2, 3, 4, 5};
    readPosition(SentenceFields{"X,4630.000,N,00730.000,E,high"}, point);
    EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 0, 4, 5)");
}

bool isPositionFieldAsWritten(const std::string& position)
{
    const auto body = "X," + position + ",";
    return isPositionAsWritten(SentenceFields{body}, 7);
}

TEST(PositionAsWritten, IsReadAndWrittenAgainUnchanged)
{
    for (const std::string position :
         {"4630.00001,N,00730.00000,E,0000400,M", "8959.99999,S,17959.99999,W,9999999,M",
          "0000.00001,S,00000.00001,W,0000000,M", "4659.99999,N,00700.00001,E,0000001,M"}) {
        EXPECT_TRUE(isPositionFieldAsWritten(position)) << position;
        const auto body = "X," + position + ",";
        gps::GPSPoint point;
        readPosition(SentenceFields{body}, point);
        std::string written;
        EXPECT_TRUE(appendPosition(written, "X", point, 7));
        EXPECT_EQ(written, body);
    }
}

TEST(PositionAsWritten, AnyOtherFormOfAFieldIsNot)
{
    for (const auto* position :
         {"463.00001,N,00730.00000,E,0000400,M", "4630.0001,N,00730.00000,E,0000400,M",
          "4630,00001,N,00730.00000,E,0000400,M", "463a.00001,N,00730.00000,E,0000400,M",
          "4660.00000,N,00730.00000,E,0000400,M", "9000.00000,N,00730.00000,E,0000400,M",
          "0000.00000,S,00730.00000,E,0000400,M", "4630.00001,n,00730.00000,E,0000400,M",
          "4630.00001,,00730.00000,E,0000400,M", "4630.00001,NS,00730.00000,E,0000400,M",
          "4630.00001,N,0730.00000,E,0000400,M", "4630.00001,N,00760.00000,E,0000400,M",
          "4630.00001,N,18000.00000,E,0000400,M", "4630.00001,N,00730.00000,N,0000400,M",
          "4630.00001,N,00730.00000,E,000400,M", "4630.00001,N,00730.00000,E,00000400,M",
          "4630.00001,N,00730.00000,E,-000400,M", "4630.00001,N,00730.00000,E,000400.,M",
          "4630.00001,N,00730.00000,E,0000400,F"})
        EXPECT_FALSE(isPositionFieldAsWritten(position)) << position;
}

TEST(AppendPosition, PadsTheAltitudeToTheWidthSignIncluded)
{
    std::string body = "before ";
    EXPECT_TRUE(appendPosition(body, "X", {46.5, -7.5, -12.5, 0, 0}, 5));
    EXPECT_EQ(body, "before X,4630.00000,N,00730.00000,W,-0012,M,");
    body.clear();
    EXPECT_TRUE(appendPosition(body, "X", {46.5, -7.5, -12.5, 0, 0}, 7));
    EXPECT_EQ(body, "X,4630.00000,N,00730.00000,W,-000012,M,");
}

TEST(AppendPosition, WritesAnAltitudeBeyond32BitsAsTheNearestBound)
{
    for (const auto& [altitude, text] : {std::pair{2147483647.9, "2147483647"},
                                         {2147483648.0, "2147483647"},
                                         {-2147483648.0, "-2147483648"},
                                         {-1e300, "-2147483648"}}) {
        std::string body;
        EXPECT_TRUE(appendPosition(body, "X", {0, 0, altitude, 0, 0}, 5));
        EXPECT_EQ(body, std::string{"X,0000.00000,N,00000.00000,E,"} + text + ",M,");
    }
}

TEST(AppendPosition, CoordinatesAtTheBoundAreWrittenAndThoseBeyondLeaveTheBodyUnchanged)
{
    std::string body = "before";
    EXPECT_FALSE(appendPosition(body, "X", {90.1, 0, 0, 0, 0}, 5));
    EXPECT_FALSE(appendPosition(body, "X", {-90.1, 0, 0, 0, 0}, 5));
    EXPECT_FALSE(appendPosition(body, "X", {0, 180.1, 0, 0, 0}, 5));
    EXPECT_FALSE(
        appendPosition(body, "X", {std::numeric_limits<double>::infinity(), 0, 0, 0, 0}, 5));
    EXPECT_EQ(body, "before");
    EXPECT_TRUE(appendPosition(body, "X", {90, -180, 0, 0, 0}, 5));
    EXPECT_EQ(body, "beforeX,9000.00000,N,18000.00000,W,00000,M,");
}

} // namespace
} // namespace magellan
