// SPDX-License-Identifier: MIT

#include "host/formats/GeocacheXml.h"

#include "Written.h"
#include "host/formats/CollectionWriter.h"

#include <gps/Value.h>

#include <gtest/gtest.h>

namespace {

std::string cacheOf(const gps::Dictionary& record)
{
    support::Written written;
    host::writeGeocache(written.output(), record);
    const auto out = written.text();
    constexpr std::string_view kStart =
        "<groundspeak:cache xmlns:groundspeak=\"http://www.groundspeak.com/cache/1/0\">";
    constexpr std::string_view kEnd = "</groundspeak:cache>";
    EXPECT_EQ(out.substr(0, kStart.size()), kStart);
    return out.substr(kStart.size(), out.size() - kStart.size() - kEnd.size());
}

TEST(GeocacheXml, ChildrenAreInTheOrderOfTheSchema)
{
    EXPECT_EQ(
        cacheOf({{"dateFound", "020309"},
                 {"datePlaced", "010208"},
                 {"geocacheHint", "under & over"},
                 {"terrain", "2.5"},
                 {"difficulty", "1"},
                 {"geocacheType", "Traditional"},
                 {"geocacheOwner", "me"},
                 {"name", "GC1"}}),
        "<groundspeak:name>GC1</groundspeak:name><groundspeak:owner>me</groundspeak:owner>"
        "<groundspeak:type>Traditional</groundspeak:type><groundspeak:difficulty>1</"
        "groundspeak:difficulty>"
        "<groundspeak:terrain>2.5</groundspeak:terrain><groundspeak:encoded_hints>under &amp; "
        "over</groundspeak:encoded_hints>"
        "<groundspeak:logs><groundspeak:log><groundspeak:date>2008-02-01T00:00:00Z</"
        "groundspeak:date>"
        "<groundspeak:type>Publish Listing</groundspeak:type></groundspeak:log><groundspeak:log>"
        "<groundspeak:date>2009-03-02T00:00:00Z</groundspeak:date><groundspeak:type>Found "
        "it</groundspeak:type>"
        "</groundspeak:log></groundspeak:logs>");
}

TEST(GeocacheXml, EmptyTextsAreLeftOut)
{
    EXPECT_EQ(cacheOf({{"name", ""}, {"geocacheOwner", ""}, {"datePlaced", ""}, {"dateFound", ""}}),
              "");
}

TEST(GeocacheXml, DatesAreConvertedAndOtherTextsAreKept)
{
    struct Row {
        const char* text;
        const char* dateTime;
    };
    for (const auto& [text, dateTime] :
         {Row{"010180", "1980-01-01T00:00:00Z"}, Row{"311299", "1999-12-31T00:00:00Z"},
          Row{"010100", "2000-01-01T00:00:00Z"}, Row{"290200", "2000-02-29T00:00:00Z"},
          Row{"311279", "2079-12-31T00:00:00Z"}})
        EXPECT_EQ(host::dateTimeOf(text), dateTime);
    for (const char* text : {"", "000100", "320100", "290201", "011300", "010000", "01018",
                             "0101800", "01 180", "1/1/80"})
        EXPECT_EQ(host::dateTimeOf(text), text);
}

} // namespace
