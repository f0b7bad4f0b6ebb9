// SPDX-License-Identifier: MIT
// Records that are written to a map file and read back are the same, whatever they are: random ones
// of each kind, from a few values, so that equal points and names meet often.

#include "host/Numbers.h"
#include "host/base/JsonText.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/GpxReader.h"
#include "host/formats/GpxWriter.h"
#include "host/formats/KmlReader.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/KmzWriter.h"
#include "host/formats/Written.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using gps::Array;
using gps::Dictionary;
using gps::GPSPoint;

// Unknown elevations are NaNs, which equal nothing, so texts are compared.
std::string sortedText(const Dictionary& data)
{
    std::string text;
    host::appendJson(text, data);
    return nlohmann::json::parse(text).dump();
}

// Events, and the data dictionary that a reader should make of them.
class Records {
public:
    explicit Records(unsigned seed) : random_(seed)
    {
        for (auto left = upTo(6); left > 0; --left)
            std::array{&Records::addWaypoint, &Records::addRoute,
                       &Records::addTrack}[upTo(2)](*this);
        for (auto left = upTo(2); left > 0; --left) // behind the waypoints, as KML has them
            addGeocache(*this);
    }

    [[nodiscard]] const std::vector<host::Event>& events() const { return events_; }

    [[nodiscard]] std::string text() const
    {
        Dictionary data;
        for (const auto& [key, list] :
             {std::pair{"waypoint", &waypoints_}, {"route", &routes_}, {"track", &tracks_}}) {
            if (!list->empty())
                data.set(key, *list);
        }
        return sortedText(data);
    }

private:
    [[nodiscard]] std::size_t upTo(std::size_t most)
    {
        return std::uniform_int_distribution<std::size_t>{0, most}(random_);
    }

    template <typename T, std::size_t kCount> T oneOf(const T (&values)[kCount])
    {
        return values[upTo(kCount - 1)];
    }

    GPSPoint point()
    {
        return {.latitude = oneOf({46.0, -46.123456789, 90.0}),
                .longitude = oneOf({7.0, 179.5, -179.5, -180.0}),
                .altitude = oneOf({0.0, -5.25, support::kNaN}),
                .time = oneOf<std::int64_t>({0, 0, support::kTen, support::kTen + 1})};
    }

    // A missing text adds no key.
    void setText(Dictionary& record, const char* key)
    {
        if (const std::string text = oneOf({"", "A", "A", " <b> & \"c\" ", "Caf\xC3\xA9"});
            !text.empty())
            record.set(key, text);
    }

    Dictionary waypoint()
    {
        Dictionary record;
        setText(record, "name");
        record.set("comment", oneOf({"", "c"}));
        setText(record, "symbol");
        return record;
    }

    static Dictionary with(Dictionary record, const char* key, gps::Value value)
    {
        record.set(key, std::move(value));
        return record;
    }

    // Drivers report points before the records that they belong to have ended.
    Dictionary report(Dictionary record)
    {
        const auto at = point();
        events_.push_back(support::wayPoint(at, record));
        return with(std::move(record), "point", at);
    }

    // The end of a transfer ends a route, too.
    void end() { events_.push_back(support::stateChange(0)); }

    static void addWaypoint(Records& records)
    {
        records.waypoints_.emplace_back(records.report(records.waypoint()));
    }

    static void addGeocache(Records& records)
    {
        records.waypoints_.emplace_back(records.report({{"name", records.oneOf({"GC1", "GC2"})},
                                                        {"comment", "c"},
                                                        {"geocacheOwner", "Ann"},
                                                        {"geocacheHint", "<stone>"},
                                                        {"geocacheType", "Mystery"},
                                                        {"datePlaced", "311299"},
                                                        {"dateFound", "010100"},
                                                        {"difficulty", "1.5"},
                                                        {"terrain", "5"},
                                                        {"symbol", "Geocache Found"}}));
    }

    static void addRoute(Records& records)
    {
        Dictionary route;
        records.setText(route, "name");
        records.setText(route, "comment");
        route.set("source", "S");
        records.events_.push_back(support::newRoute(route));
        Array points;
        for (auto left = records.upTo(3); left > 0; --left)
            points.emplace_back(records.report(records.waypoint()));
        records.end();
        records.routes_.emplace_back(with(std::move(route), "points", std::move(points)));
    }

    static void addTrack(Records& records)
    {
        Dictionary track;
        records.setText(track, "name");
        records.setText(track, "comment");
        track.set("source", "S");
        records.events_.push_back(support::newTrack(track));
        std::vector<Array> segments;
        for (auto left = records.upTo(3); left > 0; --left) {
            if (!segments.empty())
                records.events_.push_back(support::newSegment());
            auto& points = segments.emplace_back();
            for (auto more = records.upTo(4); more > 0; --more) {
                const auto point = records.point();
                records.events_.push_back(support::trackPoint(point));
                points.emplace_back(Dictionary{{"point", point}});
            }
        }
        host::appendTrack(records.tracks_, track, std::move(segments));
    }

    std::mt19937 random_;
    std::vector<host::Event> events_;
    Array waypoints_;
    Array routes_;
    Array tracks_;
};

template <typename Writer> std::string writtenText(const Records& records)
{
    support::Written written;
    Writer writer{written.output(), written.folder()};
    for (const auto& event : records.events())
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return written.text();
}

std::string dataText(const std::string& text, bool isGpx)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("a", text);
    Dictionary data;
    host::UnreadParts unread;
    const auto failure =
        isGpx ? host::readGpx(file, data, &unread) : host::readKml(file, data, unread);
    EXPECT_FALSE(failure) << failure->text();
    EXPECT_TRUE(unread.ignored.empty()) << unread.ignored.front();
    EXPECT_TRUE(unread.values.empty()) << unread.values.front();
    return sortedText(data);
}

template <typename Writer> void expectTheSame(bool isGpx)
{
    constexpr unsigned kSeeds = 300;
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        const Records records{seed};
        const auto file = writtenText<Writer>(records);
        ASSERT_EQ(dataText(file, isGpx), records.text()) << "seed " << seed << '\n' << file;
    }
}

TEST(RoundTrip, GpxGivesTheSameRecords)
{
    expectTheSame<host::GpxWriter>(true);
}

TEST(RoundTrip, KmlGivesTheSameRecords)
{
    expectTheSame<host::KmlWriter>(false);
}

TEST(RoundTrip, KmzGivesTheSameRecords)
{
    expectTheSame<host::KmzWriter>(false);
}

} // namespace
