// SPDX-License-Identifier: MIT

#include "host/formats/Formats.h"

#include "host/formats/Written.h"

#include <gmock/gmock.h>

namespace {

TEST(Formats, EveryListedNameIsFoundAndMakesAWriter)
{
    EXPECT_EQ(host::formatNames(), "gpx, kml, kmz, geojson, html, csv, jsonl");
    for (const char* name : {"gpx", "kml", "kmz", "geojson", "html", "csv", "jsonl"}) {
        const auto* const format = host::findFormat(name);
        ASSERT_NE(format, nullptr) << name;
        EXPECT_EQ(format->name, name);
        support::Written written;
        EXPECT_FALSE(format->make(written.output(), written.folder(), {})->close()) << name;
    }
}

TEST(Formats, NamesMatchExactly)
{
    for (const char* name : {"", "GPX", "gp", "gpxx", ".gpx", "gpx "})
        EXPECT_EQ(host::findFormat(name), nullptr) << name;
}

TEST(Formats, EachNameMakesItsOwnFormat)
{
    struct Row {
        const char* name;
        const char* mark;
    };
    for (const auto& [name, mark] :
         {Row{"gpx", "<gpx "}, Row{"kml", "<kml "}, Row{"kmz", "doc.kml"},
          Row{"geojson", "FeatureCollection"}, Row{"html", "<html"},
          Row{"jsonl", R"({"event":"gpsStateChange","state":1})"}}) {
        support::Written written;
        const auto writer = host::findFormat(name)->make(written.output(), written.folder(), {});
        writer->event(support::stateChange(1));
        EXPECT_FALSE(writer->close()) << name;
        EXPECT_THAT(written.text(), testing::HasSubstr(mark)) << name;
    }
}

} // namespace
