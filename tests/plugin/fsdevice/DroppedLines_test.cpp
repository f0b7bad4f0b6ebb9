// SPDX-License-Identifier: MIT
// Which lines of a default file a merge does not keep.

#include <platform/GPSUtilities/NMEAUtils.h>
#include <plugin/fsdevice/DroppedLines.h>
#include <plugin/fsdevice/NamedLines.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace magellan {
namespace {

std::string line(const std::string& body)
{
    return gps::NMEAUtils::addChecksumToNMEASentence(body) + "\r\n";
}

std::string namedWayPointLine(const std::string& name)
{
    return line("PMGNWPL,4605.979,N,00713.315,E,0001,M," + name + ",,a");
}

std::size_t droppedFrom(const NamedKind& kind, const std::string& text)
{
    gps::LineAccount account;
    const NamedLines lines{kind, text, account};
    EXPECT_EQ(account.seen - droppedLines(account), lines.count());
    return droppedLines(account);
}

std::size_t droppedWaypoints(const std::string& text)
{
    return droppedFrom(kWayPointLines, text);
}

const std::string kClosingLine = gps::NMEAUtils::addChecksumToNMEASentence("PMGNCMD,END");

TEST(DroppedLines, WholeFileLosesNothing)
{
    EXPECT_EQ(droppedWaypoints(""), 0U);
    EXPECT_EQ(droppedWaypoints(namedWayPointLine("A") + namedWayPointLine("B") + kClosingLine), 0U);
    EXPECT_EQ(droppedWaypoints(namedWayPointLine("A") + "\r\n" + kClosingLine + "\r\n"), 0U);
}

TEST(DroppedLines, DamagedLinesAndThoseOfAnotherKindAreLost)
{
    auto damaged = namedWayPointLine("A");
    damaged[12] ^= 1;
    EXPECT_EQ(droppedWaypoints(namedWayPointLine("B") + damaged), 1U);
    EXPECT_EQ(droppedWaypoints(namedWayPointLine("B") + "a note\r\n"), 1U);
    EXPECT_EQ(droppedFrom(kGeoCacheLines, namedWayPointLine("B")), 1U);
    EXPECT_EQ(droppedWaypoints(line("PMGNRTE,1,1,c,1,R,A,a")), 1U);
}

TEST(DroppedLines, ProtocolSentencesAreNotLost)
{
    const auto protocol = line("PMGNCSM,3D") + kClosingLine;
    EXPECT_EQ(droppedWaypoints(namedWayPointLine("A") + protocol), 0U);
    EXPECT_EQ(droppedRouteLines(namedWayPointLine("A") + protocol), 0U);
}

TEST(DroppedLines, OnlyTheLastRecordOfANameIsKept)
{
    EXPECT_EQ(
        droppedWaypoints(namedWayPointLine("A") + namedWayPointLine("B") + namedWayPointLine("A")),
        1U);
}

TEST(DroppedLines, RecordWithoutANameIsLost)
{
    EXPECT_EQ(droppedWaypoints(line("PMGNWPL,4605.979,N,00713.315,E,0001")), 1U);
}

TEST(DroppedLines, OnlyCompleteRoutesAreKept)
{
    const auto points = namedWayPointLine("A") + namedWayPointLine("B");
    const auto first = line("PMGNRTE,2,1,c,1,R,A,a,B,a");
    const auto second = line("PMGNRTE,2,2,m,1,R,text");
    EXPECT_EQ(droppedRouteLines(points + first + second + kClosingLine), 0U);
    EXPECT_EQ(droppedRouteLines(points + first + kClosingLine), 1U);
}

TEST(DroppedLines, OnlyTheLastRouteOfANameIsKept)
{
    const auto twoLines = line("PMGNRTE,2,1,c,1,R,A,a,B,a") + line("PMGNRTE,2,2,m,1,R,text");
    EXPECT_EQ(droppedRouteLines(namedWayPointLine("A") + twoLines + line("PMGNRTE,1,1,c,1,R,A,a")),
              2U);
}

} // namespace
} // namespace magellan
