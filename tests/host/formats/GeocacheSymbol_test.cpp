// SPDX-License-Identifier: MIT

#include "host/formats/GeocacheSymbol.h"

#include <gps/Value.h>

#include <gtest/gtest.h>

namespace {

using gps::Dictionary;
using host::correctedSymbol;

TEST(GeocacheSymbol, CacheIsFoundOnlyWithAFoundDate)
{
    EXPECT_EQ(correctedSymbol({{"symbol", "Geocache Found"}}), "Geocache");
    EXPECT_EQ(correctedSymbol({{"symbol", "Geocache Found"}, {"dateFound", ""}}), "Geocache");
    EXPECT_EQ(correctedSymbol({{"symbol", "Geocache Found"}, {"datePlaced", "010208"}}),
              "Geocache");
    EXPECT_EQ(correctedSymbol({{"symbol", "Geocache"}, {"dateFound", "020309"}}), "Geocache Found");
}

TEST(GeocacheSymbol, RightSymbolNeedsNoCorrection)
{
    EXPECT_FALSE(correctedSymbol({{"symbol", "Geocache"}}));
    EXPECT_FALSE(correctedSymbol({{"symbol", "Geocache"}, {"dateFound", ""}}));
    EXPECT_FALSE(correctedSymbol({{"symbol", "Geocache Found"}, {"dateFound", "020309"}}));
}

TEST(GeocacheSymbol, OtherSymbolsAreKept)
{
    for (const char* symbol : {"", "Waypoint", "Geocache Foun", "Geocache Found 2", "geocache"})
        EXPECT_FALSE(correctedSymbol({{"symbol", symbol}, {"dateFound", "020309"}})) << symbol;
    EXPECT_FALSE(correctedSymbol({{"dateFound", "020309"}}));
    EXPECT_FALSE(correctedSymbol({{"symbol", 1}, {"dateFound", "020309"}}));
}

} // namespace
