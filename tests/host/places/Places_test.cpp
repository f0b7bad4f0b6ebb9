// SPDX-License-Identifier: MIT
// The places near points all over the world, compared with a search of the whole table.

#include <host/places/PlaceTable.h>
#include <host/places/Places.h>
#include <host/points/TrackFigures.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <string_view>

namespace {

using host::Bounds;
using host::NearbyPlace;
using host::Place;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

gps::GPSPoint at(double latitude, double longitude)
{
    return {.latitude = latitude, .longitude = longitude};
}

double kilometresTo(const Place& place, const gps::GPSPoint& point)
{
    return host::kilometresBetween(host::PlaceOnSphere{at(place.latitude, place.longitude)},
                                   host::PlaceOnSphere{point});
}

constexpr Bounds kWorld{.west = -180, .east = 180, .south = -90, .north = 90};

std::set<std::string> namesWithin(const Bounds& bounds)
{
    std::set<std::string> names;
    host::visitPlaces(bounds, [&](const Place& place) { names.emplace(place.name); });
    return names;
}

TEST(PlaceTable, HasEachBandByLongitude)
{
    std::size_t count = 0;
    for (int band = 0; band < host::PlaceTable::kBands; ++band) {
        const auto records = host::PlaceTable::shared().band(band);
        EXPECT_TRUE(
            std::is_sorted(records.begin(), records.end(),
                           [](const auto& a, const auto& b) { return a.longitude < b.longitude; }));
        for (const auto& record : records) {
            EXPECT_GE(record.latitude, (band - 90) * 1000);
            EXPECT_LT(record.latitude, (band - 89) * 1000);
        }
        count += records.size();
    }
    EXPECT_GT(count, 100'000U);
}

TEST(Places, EachHasANameACountryAZoneAndInhabitants)
{
    host::visitPlaces(kWorld, [](const Place& place) {
        EXPECT_THAT(place.name, Not(IsEmpty()));
        EXPECT_EQ(place.country.size(), 2U) << place.name;
        EXPECT_THAT(place.zone, testing::HasSubstr("/")) << place.name;
        EXPECT_GE(place.population, 1000) << place.name;
    });
}

TEST(Places, TheNearestIsKnownWithItsDistance)
{
    const auto found = host::nearestPlace(at(-44.7, 169.15), 1);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->place.name, "Wanaka");
    EXPECT_EQ(found->place.country, "NZ");
    EXPECT_EQ(found->place.zone, "Pacific/Auckland");
    EXPECT_LT(found->kilometres, 0.1);
}

TEST(Places, ThereIsNoneBeyondTheLargestDistance)
{
    const auto point = at(-44.7, 169.0);
    const auto found = host::nearestPlace(point, 1000);
    ASSERT_TRUE(found);
    EXPECT_TRUE(host::nearestPlace(point, found->kilometres * 1.000001));
    EXPECT_FALSE(host::nearestPlace(point, found->kilometres * 0.999999));
}

TEST(Places, TheNearestIsTheSameAsInASearchOfTheWholeTable)
{
    std::mt19937 random{7};
    std::uniform_real_distribution<double> latitude{-90, 90};
    std::uniform_real_distribution<double> longitude{-180, 180};
    for (int i = 0; i < 40; ++i) {
        const auto point = at(latitude(random), longitude(random));
        SCOPED_TRACE(testing::Message() << point.latitude << " " << point.longitude);
        double least = std::numeric_limits<double>::infinity();
        host::visitPlaces(kWorld, [&](const Place& place) {
            least = std::min(least, kilometresTo(place, point));
        });
        const auto found = host::nearestPlace(point, 20'100); // half around the world
        ASSERT_TRUE(found);
        EXPECT_DOUBLE_EQ(found->kilometres, least);
    }
}

TEST(Places, TheNearestIsFoundAtThePolesAndAcrossTheDateLine)
{
    EXPECT_EQ(host::nearestPlace(at(90, 0), 20'100)->place.name,
              host::nearestPlace(at(90, 123), 20'100)->place.name);
    EXPECT_TRUE(host::nearestPlace(at(-90, 0), 20'100));
    const auto east = host::nearestPlace(at(-16.8, 179.999), 200);
    const auto west = host::nearestPlace(at(-16.8, -179.999), 200);
    ASSERT_TRUE(east && west);
    EXPECT_EQ(east->place.name, west->place.name);
}

TEST(Places, BoundsHaveThoseWithinAndNoOthers)
{
    constexpr Bounds kWanaka{.west = 169.15, .east = 169.15, .south = -44.7, .north = -44.7};
    EXPECT_THAT(namesWithin(kWanaka), testing::ElementsAre("Wanaka"));
    EXPECT_THAT(namesWithin({.west = 169.1501, .east = 169.2, .south = -44.71, .north = -44.69}),
                Not(Contains("Wanaka")));
    EXPECT_THAT(namesWithin({.west = 169.1, .east = 169.2, .south = -44.6999, .north = -44.6}),
                Not(Contains("Wanaka")));
}

TEST(Places, BoundsMayCrossTheDateLineOnEitherSide)
{
    const auto east = namesWithin({.west = 177, .east = 182, .south = -19, .north = -16});
    EXPECT_THAT(east, Not(IsEmpty()));
    EXPECT_EQ(east, namesWithin({.west = -183, .east = -178, .south = -19, .north = -16}));
}

TEST(Places, BoundsWiderThanTheWorldHaveEachPlaceOnce)
{
    const auto count = [](const Bounds& bounds) {
        int visited = 0;
        host::visitPlaces(bounds, [&](const Place&) { ++visited; });
        return visited;
    };
    EXPECT_EQ(count({.west = -200, .east = 200, .south = -90, .north = 90}), count(kWorld));
}

TEST(Whereabouts, ArePlaceUpTo25KilometresAndADirectionBeyond)
{
    EXPECT_EQ(host::whereabouts(at(-44.7, 169.15)), "near Wanaka");
    EXPECT_EQ(host::whereabouts(at(78.4, 15.6)), "near Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(78.6, 15.6)), "42 km north of Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(77.9, 15.6)), "36 km south of Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(78.2, 20)), "99 km east of Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(79.2, 10.0)), "164 km north-west of Longyearbyen");
}

TEST(Whereabouts, HaveTheDirectionInTheUsersLanguage)
{
    const auto german = [](const char* english) {
        const std::string_view text{english};
        return text == "near {}"                 ? "bei {}"
               : text == "{:.0f} km north of {}" ? "{:.0f} km nördlich von {}"
                                                 : english;
    };
    EXPECT_EQ(host::whereabouts(at(78.4, 15.6), german), "bei Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(78.6, 15.6), german), "42 km nördlich von Longyearbyen");
    EXPECT_EQ(host::whereabouts(at(77.9, 15.6), german), "36 km south of Longyearbyen");
}

TEST(Whereabouts, AreUnknownWhereNobodyLivesWithin300Kilometres)
{
    EXPECT_EQ(host::whereabouts(at(0, -30)), "");
    EXPECT_EQ(host::whereabouts(at(-48.87, -123.39)), "");
}

TEST(TimeZoneAt, IsThatOfTheNearestPlace)
{
    EXPECT_EQ(host::timeZoneAt(at(46.44, 7.92)), "Europe/Zurich");
    EXPECT_EQ(host::timeZoneAt(at(-44.66, 169.14)), "Pacific/Auckland");
    EXPECT_EQ(host::timeZoneAt(at(27.7, 85.3)), "Asia/Kathmandu");
}

TEST(TimeZoneAt, IsUnknownWhereNobodyLivesWithin500Kilometres)
{
    EXPECT_EQ(host::timeZoneAt(at(-48.87, -123.39)), "");
}

} // namespace
