// SPDX-License-Identifier: MIT
// Imports of single files with the built program.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <tuple>

namespace {

using support::magellangps;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kFiles[] = MAGELLAN_SOURCE_DIR "/samples/files/";

TEST(Import, EachFilesCallsAreFollowedByItsResult)
{
    const support::TemporaryFolder folder;
    const auto track = folder.put("a.log", support::sentences({support::kFirstFix}));
    const auto points = folder.put("b.upt", support::sentences({support::kHut}));
    const auto ran = magellangps({"import", track, points, "--events"});
    EXPECT_EQ(ran.out,
              R"({"event":"startTransfer","kind":1}
{"event":"newTrack","track":{"name":"Day 1"}}
{"event":"trackPoint","point":{"latitude":46.5,"longitude":7.25,"altitude":1200,"time":1717236000,"reserved":0},"extra":{"trackName":"Day 1"}}
{"event":"endTransfer","kind":1}
{"event":"gpsStateChange","state":0}
{"event":"result","error":null}
{"event":"startTransfer","kind":3}
{"event":"wayPoint","point":{"latitude":-46.75,"longitude":-7.5,"altitude":328,"time":0,"reserved":0},"extra":{"name":"Hut","comment":"","symbol":"Lodging"}}
{"event":"endTransfer","kind":3}
{"event":"gpsStateChange","state":0}
{"event":"result","error":null}
)");
    EXPECT_THAT(ran.err, IsEmpty());
    EXPECT_EQ(ran.status, 0);
}

TEST(Import, FileWhoseLinesDoNotEndLikeAReceiversIsExplained)
{
    const auto text = support::sentences({support::kFirstFix, support::kFirstFix});
    std::string feeds = text;
    std::erase(feeds, '\r');
    std::string returns = text;
    std::erase(returns, '\n');
    for (const auto& changed : {feeds, returns, text + feeds, feeds + text}) {
        const support::TemporaryFolder folder;
        const auto file = folder.put("lf.log", changed);
        const auto output = folder.path("lf.gpx");
        for (const bool isThere : {false, true}) {
            if (isThere)
                folder.put("lf.gpx", "old");
            const auto ran = magellangps({"import", file, "-o", output});
            EXPECT_EQ(ran.status, 1) << changed;
            EXPECT_THAT(ran.err, HasSubstr("Lines of this file do not end with CR LF"));
            EXPECT_THAT(ran.err, HasSubstr("unix2dos. Path: " + file));
            EXPECT_EQ(std::filesystem::exists(output), isThere);
        }
    }
}

TEST(Import, RouteFileWhoseLinesDoNotEndLikeAReceiversIsExplained)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("lf.rte", "$PMGNWPL,1*00\n$PMGNRTE,1*00\n");
    const auto ran = magellangps({"import", file});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("do not end with CR LF"));
    EXPECT_THAT(ran.err, Not(HasSubstr("unrecognized")));
}

constexpr char kRouteStart[] = "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,A,,a";
constexpr char kRouteEnd[] = "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,B,,a";
constexpr char kRoute[] = "PMGNRTE,1,1,c,1,Tour,A,a,B,a";

TEST(Import, RouteFileMayBeginWithItsWaypoints)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("Tour.rte", support::sentences({kRouteStart, kRouteEnd, kRoute}));
    const auto ran = magellangps({"import", file, "-o", folder.path("a.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, IsEmpty());
    const auto gpx = folder.read("a.gpx");
    EXPECT_THAT(gpx, HasSubstr("<name>Tour</name>"));
    EXPECT_THAT(gpx, HasSubstr("<rtept lat=\"47"));
}

TEST(Import, DamagedLineOfSuchARouteFileIsCounted)
{
    const support::TemporaryFolder folder;
    const auto text = support::sentences({kRouteStart, kRouteEnd, kRoute});
    const auto file = folder.put("Tour.rte", text + "$PMGNRTE,1*00\r\n");
    const auto ran = magellangps({"import", file, "-o", folder.path("a.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, HasSubstr("3 of 4 route lines; 1 damaged: Tour.rte line 4"));
    EXPECT_EQ(magellangps({"import", file, "--strict"}).status, 1);
}

TEST(Import, RouteFileWithATruncatedSentenceIsRefused)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("Tour.rte", support::sentences({kRouteStart, "PMGNRTE,1,1"}));
    const auto ran = magellangps({"import", file});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Contents of file unrecognized"));
}

TEST(Import, EventLinesShowThatTheDriverRefusedARouteFile)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("Tour.rte", support::sentences({kRouteStart, kRouteEnd, kRoute}));
    const auto ran = magellangps({"import", file, "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, HasSubstr("unrecognized"));
    EXPECT_THAT(ran.out, Not(HasSubstr("Tour\"")));
}

TEST(Import, AllSampleFilesGoIntoOneValidGpx)
{
    const support::TemporaryFolder folder;
    std::vector<std::string> words{"import", "-o", folder.path("all.gpx")};
    for (const char* name : {"trip.log", "loop.rte", "caches.gs",
                             "points.upt"}) // tracks first, although GPX has them last
        words.push_back(std::string{kFiles} + name);
    const auto ran = magellangps(words);
    EXPECT_EQ(ran.status, 0) << ran.err;
    const auto gpx = folder.read("all.gpx");
    EXPECT_LT(gpx.find("<wpt "), gpx.find("<rte>"));
    EXPECT_LT(gpx.find("<rte>"), gpx.find("<trk>"));
    const auto checked = support::run({"xmllint", "--noout", "--schema",
                                       MAGELLAN_SOURCE_DIR "/tests/schemas/gpx-with-cache.xsd",
                                       folder.path("all.gpx")});
    EXPECT_EQ(checked.status, 0) << checked.err;
}

TEST(Import, KindThatIsNotWantedIsLeftOutOfTheOutput)
{
    const support::TemporaryFolder folder;
    const std::vector<std::string> words{"import", std::string{kFiles} + "trip.log",
                                         std::string{kFiles} + "points.upt", "-o",
                                         folder.path("all.gpx")};
    for (const auto& [option, gone, kept] :
         {std::tuple{"--no-tracks", "<trk>", "<wpt "}, {"--no-waypoints", "<wpt ", "<trk>"}}) {
        auto these = words;
        these.emplace_back(option);
        const auto ran = magellangps(these);
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(folder.read("all.gpx"), AllOf(HasSubstr(kept), Not(HasSubstr(gone))));
    }
}

TEST(Import, FolderIsOneDownloadOfAllItsFiles)
{
    const support::TemporaryFolder card;
    std::filesystem::copy(kFiles, card.makeFolder("deep"));
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"import", card.path()}, {"acquire", "--card", card.path()}}) {
        auto all = words;
        all.insert(all.end(), {"-o", card.path("out.gpx"), "--summary"});
        const auto ran = magellangps(all);
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.err, IsEmpty());
        EXPECT_THAT(ran.out, HasSubstr("\nWaypoints                    6\n"
                                       "Geocaches                    5\n"
                                       "Route      Lake Loop         8 "));
        EXPECT_THAT(ran.out, HasSubstr("\nTrack      Autumn walk     277 "));
        EXPECT_THAT(card.read("out.gpx"), HasSubstr("<trkpt "));
    }
}

// A file says when it was made and of which other file.
std::string withoutOrigin(const std::string& gpx)
{
    return std::regex_replace(gpx, std::regex{"<metadata>.*|<src>[^<]*</src>"}, "");
}

TEST(Import, GpxFileIsWrittenAsItWasButForItsTime)
{
    const support::TemporaryFolder folder;
    EXPECT_EQ(magellangps({"import", std::string{kFiles} + "trip.log",
                           std::string{kFiles} + "points.upt", "-o", folder.path("first.gpx")})
                  .status,
              0);
    const auto ran = magellangps({"import", folder.path("first.gpx"), "-o", folder.path("b.gpx")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(withoutOrigin(folder.read("b.gpx")), withoutOrigin(folder.read("first.gpx")));
    EXPECT_THAT(folder.read("first.gpx"), HasSubstr("<src>trip.log</src>"));
    EXPECT_THAT(folder.read("b.gpx"), HasSubstr("<src>trip.log</src>"));
}

TEST(Import, WhatIsLeftOutOfAGpxFileIsNamed)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("a.gpx", R"(<gpx version="1.1">
<wpt lat="46" lon="7"><time>1975-06-01T12:00:00Z</time><name>A</name><link href="x"/></wpt></gpx>)");
    const auto ran = magellangps({"import", file, "-o", folder.path("b.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "note: a.gpx, line 2: a time is not from 1980 to 9999, "
                       "\"1975-06-01T12:00:00Z\", so it counts as unknown.\n"
                       "note: a.gpx: left out, because records have no place for it: the link of 1 "
                       "waypoint.\n");
    EXPECT_THAT(folder.read("b.gpx"), Not(HasSubstr("<time>1975")));
}

TEST(Import, ImpossibleElevationIsLeftOutOfMapFilesAndCounted)
{
    const support::TemporaryFolder folder;
    const auto file =
        folder.put("a.upt", support::sentences({"PMGNWPL,4605.979,N,00713.315,E,1" +
                                                std::string(200, '0') + ",M,High,,a"}));
    for (const char* const name : {"a.gpx", "a.kml", "a.geojson", "a.csv"}) {
        const auto ran = magellangps({"import", file, "-o", folder.path(name)});
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.err, HasSubstr("1 elevation of more than 100,000 km was left out"));
        EXPECT_THAT(folder.read(name), Not(HasSubstr("00000000000")));
    }
}

TEST(Import, AnOutputThatIsOneOfTheFilesIsRefused)
{
    const support::TemporaryFolder folder;
    const auto track = folder.put("a.log", support::sentences({support::kFirstFix}));
    const auto before = folder.read("a.log");
    std::filesystem::create_symlink(track, folder.path("b.gpx"));
    for (const auto& output : {track, folder.path("b.gpx")}) {
        const auto ran = magellangps({"import", track, "-o", output, "--format", "gpx"});
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr("The output file is one of the files to import"));
        EXPECT_EQ(folder.read("a.log"), before);
    }
    EXPECT_EQ(magellangps({"import", track, "-o", folder.path("c.gpx"), "--format", "gpx"}).status,
              0);
}

TEST(Import, FolderWithoutAReceiversFileIsStatus1)
{
    const support::TemporaryFolder folder;
    folder.put("notes.txt", "x");
    EXPECT_EQ(magellangps({"import", folder.path()}).status, 1);
    EXPECT_EQ(magellangps({"acquire", "--card", folder.path(), "--events"}).status, 1);
}

TEST(Import, OneBadFileLeavesAPartialFileWithTheOthers)
{
    const support::TemporaryFolder folder;
    const auto bad = folder.put("a.LOG", support::sentences({support::kFirstFix}));
    const auto good = folder.put("b.log", support::sentences({support::kFirstFix}));
    const auto ran = magellangps({"import", bad, good, "-o", folder.path("out.gpx")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Unrecognized extension on selected file. File may be invalid "
                                   "or this may be the wrong plug-in. Path: " +
                                   bad));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out.gpx")));
    EXPECT_THAT(folder.read("out.partial.gpx"), HasSubstr("<trkpt "));
}

TEST(Import, UnreadableFileLeavesNoPartialFile)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("a.upt", "");
    const auto ran = magellangps({"import", file, "-o", folder.path("out.gpx"), "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(
        ran.out,
        "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":{\"domain\":"
        "\"com.Orvane.GPSPlugin.ErrorDomain\",\"code\":-5,\"description\":\"Couldn't open "
        "file\",\"suggestion\":\"File may "
        "be missing or this may be the wrong plug-in\",\"path\":\"" +
            file + "\"}}\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{folder.path()}, {}), 1);
}

TEST(Import, ErrorIsPrintedOnce)
{
    const support::TemporaryFolder folder;
    const auto ran = magellangps({"import", folder.path("gone.upt"), "--debug", "1"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
}

TEST(Import, UnknownDriverIsStatus3)
{
    EXPECT_EQ(magellangps({"import", "a.log", "--driver", "other"}).status, 3);
}

} // namespace
