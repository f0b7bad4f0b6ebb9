// SPDX-License-Identifier: MIT

#include <gps/Geocache.h>
#include <gps/Value.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

TEST(Geocache, ASymbolThatBeginsWithGeocacheMakesARecordAGeocache)
{
    for (const char* symbol : {"Geocache", "Geocache Found", "Geocaches", "Geocache|Multi"})
        EXPECT_TRUE(isGeocache({{"name", "A"}, {"symbol", symbol}})) << symbol;
    for (const char* symbol : {"", "Geocach", "geocache", "GEOCACHE", " Geocache", "A Geocache"})
        EXPECT_FALSE(isGeocache({{"name", "A"}, {"symbol", symbol}})) << symbol;
}

TEST(Geocache, ASymbolThatIsMissingOrNotAStringMakesAWaypoint)
{
    EXPECT_FALSE(isGeocache({}));
    EXPECT_FALSE(isGeocache({{"name", "Geocache"}, {"terrain", "1"}, {"geocacheType", "Multi"}}));
    EXPECT_FALSE(isGeocache({{"symbol", 1}}));
    EXPECT_FALSE(isGeocache({{"symbol", Array{"Geocache"}}}));
}

TEST(Geocache, BothSymbolsAreThoseOfAGeocache)
{
    EXPECT_TRUE(isGeocache({{"symbol", kGeocacheSymbol}}));
    EXPECT_TRUE(isGeocache({{"symbol", kFoundGeocacheSymbol}}));
}

} // namespace
} // namespace gps
