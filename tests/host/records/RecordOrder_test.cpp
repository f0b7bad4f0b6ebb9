// SPDX-License-Identifier: MIT

#include "host/records/RecordOrder.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::RecordRow;
using host::RecordSorting;
using support::kTen;

std::vector<RecordRow> rowsNamed(const std::vector<std::string>& names)
{
    std::vector<RecordRow> rows;
    for (const auto& name : names)
        rows.push_back({.name = name, .searched = host::searchKey(name)});
    return rows;
}

std::string namesOf(const std::vector<RecordRow>& rows, const host::RecordArrangement& arrangement)
{
    std::string names;
    for (const auto i : arranged(rows, arrangement))
        names += (names.empty() ? "" : ",") + rows[i].name;
    return names;
}

TEST(RecordOrder, WithoutASearchShowsAllAsReceived)
{
    const auto rows = rowsNamed({"b", "a", "c"});
    EXPECT_EQ(namesOf(rows, {}), "b,a,c");
    EXPECT_EQ(namesOf(rows, {.search = "  "}), "b,a,c");
    EXPECT_EQ(namesOf(rows, {.isDescending = true}), "c,a,b");
    EXPECT_EQ(namesOf({}, {}), "");
}

TEST(RecordOrder, FindsEachWordAnywhere)
{
    const auto rows = rowsNamed({"Lake way back", "Lake", "Way to the lake"});
    EXPECT_EQ(namesOf(rows, {.search = "WAY láke"}), "Lake way back,Way to the lake");
    EXPECT_EQ(namesOf(rows, {.search = "lakes"}), "");
}

TEST(RecordOrder, NamesAreInAlphabeticalOrderWithNumbersAsNumbers)
{
    const auto rows = rowsNamed({"Day 10", "", "day 2", "Äpfel", "Zug"});
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kName}), "Äpfel,day 2,Day 10,Zug,");
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kName, .isDescending = true}),
              "Zug,Day 10,day 2,Äpfel,")
        << "without a name, last in either direction";
}

TEST(RecordOrder, EqualRowsKeepTheirOrder)
{
    const auto rows = rowsNamed({"A", "a", "A"});
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kName}), "A,a,A");
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kName, .isDescending = true}), "A,a,A");
}

TEST(RecordOrder, KindsAreTracksRoutesWaypointsGeocaches)
{
    auto rows = rowsNamed({"cache", "waypoint", "route", "track"});
    rows[0].isGeocache = true;
    rows[2].kind = host::RecordKind::kRoute;
    rows[3].kind = host::RecordKind::kTrack;
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kKind}), "track,route,waypoint,cache");
}

TEST(RecordOrder, UnknownDatesAndLengthsComeLast)
{
    auto rows = rowsNamed({"none", "late", "early"});
    rows[1].first = kTen + 1;
    rows[2].first = kTen;
    rows[1].metres = 5;
    rows[2].metres = 6;
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kDate}), "early,late,none");
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kDate, .isDescending = true}),
              "late,early,none");
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kLength}), "late,early,none");
}

TEST(RecordOrder, DistancesAreFromTheReference)
{
    auto rows = rowsNamed({"nowhere", "far", "near"});
    rows[1].position = {{2, 0, 0, 0, 0}};
    rows[2].position = {{1, 0, 0, 0, 0}};
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kDistance}), "nowhere,far,near")
        << "without a reference, as received";
    EXPECT_EQ(namesOf(rows, {.sorting = RecordSorting::kDistance,
                             .reference = gps::GPSPoint{0, 0, 0, 0, 0}}),
              "near,far,nowhere");
}

} // namespace
