// SPDX-License-Identifier: MIT

#include "host/formats/PageTiles.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using host::tilesMistake;
using host::tileSources;
using host::usualAttribution;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(PageTiles, UrlsOfTiles)
{
    for (const char* const url :
         {"https://tile.example.org/{z}/{x}/{y}.png", "http://localhost:8080/{z}/{x}/{y}",
          "http://[::1]:80/{z}/{x}/{y}", "https://{s}.example.org/t?x={x}&y={y}&z={z}&key=a%20b",
          "https://tiles-{s}.example.org/{z}/{y}/{x}", "file:///maps/{z}/{x}/{y}.png"})
        EXPECT_THAT(tilesMistake(url), IsEmpty()) << url;
}

TEST(PageTiles, UrlNeedsAKnownBeginning)
{
    for (const char* const url :
         {"", "tile.example.org/{z}/{x}/{y}", "ftp://a/{z}/{x}/{y}", "HTTPS://a/{z}/{x}/{y}",
          "javascript:{z}{x}{y}", "file://server/{z}/{x}/{y}", "data:,{z}{x}{y}"})
        EXPECT_THAT(tilesMistake(url), HasSubstr("does not begin with https://")) << url;
}

TEST(PageTiles, UrlNeedsZoomColumnAndRow)
{
    EXPECT_THAT(tilesMistake("https://a.org/{x}/{y}"), HasSubstr("has no {z}"));
    EXPECT_THAT(tilesMistake("https://a.org/{z}/{y}"), HasSubstr("has no {x}"));
    EXPECT_THAT(tilesMistake("https://a.org/{z}/{x}"), HasSubstr("has no {y}"));
}

TEST(PageTiles, UrlHasNoOtherPlaceholder)
{
    EXPECT_THAT(tilesMistake("https://a.org/{z}/{x}/{y}{r}.png"), HasSubstr(" has {r}; only {z}"));
    EXPECT_THAT(tilesMistake("https://a.org/{z}/{x}/{y}{"), HasSubstr(" has {; only"));
    EXPECT_THAT(tilesMistake("https://a.org/{Z}/{z}/{x}/{y}"), HasSubstr(" has {Z}; only"));
}

TEST(PageTiles, ServerCannotChangeThePolicyOfThePage)
{
    for (const char* const server : {"", "a;b", "a'b'", "*", "{x}.org", "me:you@a.org", "a,b"})
        EXPECT_THAT(tilesMistake("https://" + std::string{server} + "/{z}/{x}/{y}"),
                    HasSubstr("does not name a server"))
            << server;
    for (const char* const server : {"a b", "a\"b", "a\x7f", "\xC3\xA4.org"})
        EXPECT_THAT(tilesMistake("https://" + std::string{server} + "/{z}/{x}/{y}"),
                    HasSubstr("a character that a URL cannot have"))
            << server;
}

TEST(PageTiles, PolicyNamesEachServer)
{
    EXPECT_EQ(tileSources("https://a.org:81/{z}/{x}/{y}"), "https://a.org:81");
    EXPECT_EQ(tileSources("http://{s}.a.org/{z}/{x}/{y}"),
              "http://a.a.org http://b.a.org http://c.a.org");
    EXPECT_EQ(tileSources("file:///maps/{z}/{x}/{y}"), "file:");
}

TEST(PageTiles, AttributionIsThatOfOpenStreetMapForItsOwnTilesOnly)
{
    for (const char* const server :
         {"tile.openstreetmap.org", "{s}.tile.openstreetmap.org", "openstreetmap.org:443"})
        EXPECT_EQ(usualAttribution("https://" + std::string{server} + "/{z}/{x}/{y}.png"),
                  "© OpenStreetMap contributors");
    EXPECT_EQ(usualAttribution("https://{s}.notopenstreetmap.org/{z}/{x}/{y}"),
              "a.notopenstreetmap.org");
    EXPECT_EQ(usualAttribution("file:///maps/{z}/{x}/{y}"), "");
}

} // namespace
