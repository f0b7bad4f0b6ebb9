// SPDX-License-Identifier: MIT

#include "host/records/RecordRow.h"

#include "host/Numbers.h"

#include <gps/Geocache.h>
#include <gps/Value.h>

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace {

using host::RecordKind;
using support::kNaN;
using support::kTen;

gps::Dictionary named(std::string_view name)
{
    gps::Dictionary record;
    record.set("name", name);
    return record;
}

TEST(SearchKey, IgnoresCaseAndAccents)
{
    EXPECT_EQ(host::searchKey("Lake WANAKA"), "lake wanaka");
    EXPECT_EQ(host::searchKey("Zürich"), "zurich");
    EXPECT_EQ(host::searchKey("ZU\u0308RICH"), "zurich") << "with a combining accent";
    EXPECT_EQ(host::searchKey("Straße"), host::searchKey("STRASSE"));
    EXPECT_EQ(host::searchKey("Ｋａｙａｋ"), "kayak") << "wide letters";
    EXPECT_EQ(host::searchKey(""), "");
}

TEST(SearchKey, OfInvalidBytesIsAText)
{
    EXPECT_EQ(host::searchKey("a\xFF"), "a\uFFFD");
}

TEST(RecordRows, AreTracksThenRoutesThenPoints)
{
    host::RecordSet records;
    records.points.push_back({{}, named("P")});
    records.routes.push_back({named("R")});
    records.tracks.push_back({named("T")});
    records.tracks.push_back({named("U")});
    const auto rows = host::recordRows(records);
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[1].name, "U");
    EXPECT_EQ(rows[1].kind, RecordKind::kTrack);
    EXPECT_EQ(rows[1].index, 1);
    EXPECT_EQ(rows[2].kind, RecordKind::kRoute);
    EXPECT_EQ(rows[3].kind, RecordKind::kPoint);
    EXPECT_EQ(rows[3].index, 0);
}

TEST(RecordRows, OfNothingAreNone)
{
    EXPECT_TRUE(host::recordRows({}).empty());
}

TEST(RecordRows, TrackHasTheFiguresOfTheSummary)
{
    host::RecordSet records;
    records.tracks.push_back({named("T"),
                              {{kNaN, 0, 0, 0, 0},
                               {0, 0, 100, kTen + 60, 0},
                               {0.001, 0, 110, kTen, 0},
                               {0.002, 0, 110, kTen + 120, 0}},
                              {3}});
    const auto row = host::recordRows(records)[0];
    EXPECT_NEAR(row.metres.value(), 111.195, 0.001) << "no way leads to the new segment";
    EXPECT_EQ(row.first, kTen);
    EXPECT_EQ(row.last, kTen + 120);
    EXPECT_EQ(row.ascent, 10);
    EXPECT_EQ(row.descent, 0);
    EXPECT_EQ(row.position.value().altitude, 100) << "the first valid point";
    EXPECT_EQ(row.points, 4);
}

TEST(RecordRows, TrackWithoutPointsHasNoPositionAndNoTime)
{
    host::RecordSet records;
    records.tracks.push_back({named("T")});
    const auto row = host::recordRows(records)[0];
    EXPECT_EQ(row.metres, 0);
    EXPECT_FALSE(row.position);
    EXPECT_FALSE(row.first);
    EXPECT_FALSE(row.ascent);
}

TEST(RecordRows, GeocacheIsKnownByItsSymbol)
{
    host::RecordSet records;
    auto cache = named("C");
    cache.set("symbol", gps::kFoundGeocacheSymbol);
    cache.set("geocacheOwner", "Ömer");
    records.points.push_back({{1, 2, 0, 5, 0}, cache});
    records.points.push_back({{1, 91, 0, kTen, 0}, named("W")});
    const auto rows = host::recordRows(records);
    EXPECT_TRUE(rows[0].isGeocache);
    EXPECT_FALSE(rows[0].first) << "a time without a date";
    EXPECT_NE(rows[0].searched.find("omer"), std::string::npos);
    EXPECT_FALSE(rows[1].isGeocache);
    EXPECT_EQ(rows[1].first, kTen);
}

TEST(RecordRows, RouteIsFoundByItsPoints)
{
    host::RecordSet records;
    records.routes.push_back({named("R"), {{{0, 0, 0, 0, 0}, named("Hut")}}});
    EXPECT_NE(host::recordRows(records)[0].searched.find("hut"), std::string::npos);
}

} // namespace
