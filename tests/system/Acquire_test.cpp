// SPDX-License-Identifier: MIT
// Downloads with the built program, from receivers made by the tests and from the sample receiver.

#include "system/Program.h"
#include "system/Receiver.h"
#include "system/Running.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <regex>
#include <string>

#include <sys/wait.h>

namespace {

using support::acquire;
using support::kSampleReceiver;
using support::magellangps;
using support::Ran;
using support::Receiver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::size_t count(const std::string& text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

void expectValidGpx(const std::string& path)
{
    for (const char* schema : {"gpx-1.1.xsd", "gpx-with-cache.xsd"}) {
        const auto checked =
            support::run({"xmllint", "--noout", "--schema",
                          std::string{MAGELLAN_SOURCE_DIR "/tests/schemas/"} + schema, path});
        EXPECT_EQ(checked.status, 0) << checked.err;
    }
}

// The file's text with NOW in place of the time at which it was written.
std::string withoutTimeOfWriting(const std::string& gpx)
{
    return std::regex_replace(gpx, std::regex{"(<metadata>.*<time>)[^<]*(<.*>) *"}, "$1NOW$2");
}

// Of the receiver's track.
constexpr char kJumpNote[] = "note: 1 track was divided into segments at 1 jump that no receiver "
                             "can make; --split-gap off keeps it whole.\n";

constexpr char kExpectedEvents[] =
    R"({"event":"gpsStateChange","state":1}
{"event":"startTransfer","kind":3}
{"event":"wayPoint","point":{"latitude":46.5,"longitude":7.25,"altitude":1200,"time":0,"reserved":0},"extra":{"name":"Camp","comment":"by the lake","symbol":"Resort"}}
{"event":"wayPoint","point":{"latitude":-46.75,"longitude":-7.5,"altitude":328,"time":0,"reserved":0},"extra":{"name":"Hut","comment":"","symbol":"Lodging"}}
{"event":"endTransfer","kind":3}
{"event":"startTransfer","kind":3}
{"event":"wayPoint","point":{"latitude":46,"longitude":7,"altitude":500,"time":0,"reserved":0},"extra":{"name":"GC1","comment":"note","geocacheOwner":"owner","geocacheHint":"hint","geocacheType":"Traditional","datePlaced":"010208","dateFound":"","difficulty":"1","terrain":"2.5","symbol":"Geocache Found"}}
{"event":"endTransfer","kind":3}
{"event":"startTransfer","kind":2}
{"event":"newRoute","route":{"name":"Loop","lastIndex":1}}
{"event":"wayPoint","point":{"latitude":46.5,"longitude":7.25,"altitude":1200,"time":0,"reserved":0},"extra":{"name":"Camp","comment":"by the lake","symbol":"Resort","point":{"latitude":46.5,"longitude":7.25,"altitude":1200,"time":0,"reserved":0}}}
{"event":"wayPoint","point":{"latitude":-46.75,"longitude":-7.5,"altitude":328,"time":0,"reserved":0},"extra":{"name":"Hut","comment":"","symbol":"Lodging","point":{"latitude":-46.75,"longitude":-7.5,"altitude":328,"time":0,"reserved":0}}}
{"event":"endTransfer","kind":2}
{"event":"startTransfer","kind":1}
{"event":"newTrack","track":{"name":"Day 1"}}
{"event":"trackPoint","point":{"latitude":46.5,"longitude":7.25,"altitude":1200,"time":1717236000,"reserved":0},"extra":{"trackName":"Day 1"}}
{"event":"trackPoint","point":{"latitude":46.75,"longitude":7.5,"altitude":1201,"time":1717236001,"reserved":0},"extra":{"trackName":"Day 1"}}
{"event":"endTransfer","kind":1}
{"event":"gpsStateChange","state":0}
{"event":"result","error":null}
)";

TEST(Acquire, EveryCallIsALineInOrder)
{
    const Receiver receiver;
    const auto ran = acquire(receiver, {"--events"});
    EXPECT_EQ(ran.out, kExpectedEvents);
    EXPECT_THAT(ran.err, IsEmpty());
    EXPECT_EQ(ran.status, 0);
}

TEST(Acquire, JsonLinesFileHoldsTheEventLines)
{
    const Receiver receiver;
    EXPECT_EQ(acquire(receiver, {"-o", receiver.path("out.jsonl")}).status, 0);
    EXPECT_EQ(receiver.read("out.jsonl"), kExpectedEvents);
}

TEST(Acquire, AnyFormatCanBeWrittenToStandardOutput)
{
    const Receiver receiver;
    EXPECT_EQ(acquire(receiver, {"-o", "-", "--format", "jsonl"}).out, kExpectedEvents);
}

TEST(Acquire, TinyReceiverGivesExactlyThisGpx)
{
    const Receiver receiver;
    const auto ran = acquire(receiver, {"-o", receiver.path("trip.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_EQ(ran.err, kJumpNote);
    EXPECT_EQ(withoutTimeOfWriting(receiver.read("trip.gpx")),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="magellangps" xmlns="http://www.topografix.com/GPX/1/1">
<metadata><desc>From Magellan</desc><time>NOW</time><bounds minlat="-46.75" minlon="-7.5" maxlat="46.75" maxlon="7.5"/></metadata>
<wpt lat="46.5" lon="7.25"><ele>1200</ele><name>Camp</name><cmt>by the lake</cmt><sym>Resort</sym></wpt>
<wpt lat="-46.75" lon="-7.5"><ele>328</ele><name>Hut</name><sym>Lodging</sym></wpt>
<wpt lat="46" lon="7"><ele>500</ele><name>GC1</name><cmt>note</cmt><sym>Geocache</sym><extensions><groundspeak:cache xmlns:groundspeak="http://www.groundspeak.com/cache/1/0"><groundspeak:name>GC1</groundspeak:name><groundspeak:owner>owner</groundspeak:owner><groundspeak:type>Traditional</groundspeak:type><groundspeak:difficulty>1</groundspeak:difficulty><groundspeak:terrain>2.5</groundspeak:terrain><groundspeak:encoded_hints>hint</groundspeak:encoded_hints><groundspeak:logs><groundspeak:log><groundspeak:date>2008-02-01T00:00:00Z</groundspeak:date><groundspeak:type>Publish Listing</groundspeak:type></groundspeak:log></groundspeak:logs></groundspeak:cache></extensions></wpt>
<rte><name>Loop</name><src>Magellan</src>
<rtept lat="46.5" lon="7.25"><ele>1200</ele><name>Camp</name><cmt>by the lake</cmt><sym>Resort</sym></rtept>
<rtept lat="-46.75" lon="-7.5"><ele>328</ele><name>Hut</name><sym>Lodging</sym></rtept>
</rte>
<trk><name>Day 1</name><src>Magellan</src><trkseg>
<trkpt lat="46.5" lon="7.25"><ele>1200</ele><time>2024-06-01T10:00:00Z</time></trkpt>
</trkseg><trkseg>
<trkpt lat="46.75" lon="7.5"><ele>1201</ele><time>2024-06-01T10:00:01Z</time></trkpt>
</trkseg></trk>
</gpx>
)");
    expectValidGpx(receiver.path("trip.gpx"));
}

TEST(Acquire, SampleReceiverIsValidGpxWithAPointForEachEvent)
{
    const support::TemporaryFolder folder;
    const auto path = folder.path("trip.gpx");
    const auto ran =
        magellangps({"acquire", "--test-folder", kSampleReceiver, "--events", "-o", path});
    EXPECT_EQ(ran.status, 0) << ran.err;
    const auto gpx = folder.read("trip.gpx");
    EXPECT_GT(count(ran.out, "\"trackPoint\""), 1000U);
    EXPECT_EQ(count(gpx, "<trkpt "), count(ran.out, "\"trackPoint\""));
    EXPECT_EQ(count(gpx, "<wpt ") + count(gpx, "<rtept "), count(ran.out, "\"wayPoint\""));
    EXPECT_EQ(count(gpx, "<rte>"), count(ran.out, "\"newRoute\""));
    EXPECT_EQ(count(gpx, "<trk>"), count(ran.out, "\"newTrack\""));
    EXPECT_GT(count(gpx, "<groundspeak:cache "), 0U);
    expectValidGpx(path);
}

TEST(Acquire, OutputIsTheSameEveryTimeButForTheTimeOfWriting)
{
    const support::TemporaryFolder folder;
    for (const char* name : {"a.gpx", "b.gpx"})
        EXPECT_EQ(
            magellangps({"acquire", "--test-folder", kSampleReceiver, "-o", folder.path(name)})
                .status,
            0);
    EXPECT_EQ(withoutTimeOfWriting(folder.read("a.gpx")),
              withoutTimeOfWriting(folder.read("b.gpx")));
}

TEST(Acquire, SummaryIsATableOnStandardOutput)
{
    const Receiver receiver;
    const auto expected =
        "Kind       Name   Points  First (UTC)          Last (UTC)           Length km  Where\n"
        "Waypoints              2\n"
        "Geocaches              1\n"
        "Route      Loop        2                                             10468.17  near "
        "Saanen\n"
        "Track      Day 1       2  2024-06-01 10:00:00  2024-06-01 10:00:01       0.00  near "
        "Saanen\n"
        "Total                  7  2024-06-01 10:00:00  2024-06-01 10:00:01       0.00\n"
        "\nTrack \"Day 1\" jumps 33.72 km in 1 s, up to 2024-06-01 10:00:01. No receiver can "
        "record "
        "that; one of the two points is wrong.\n";
    EXPECT_EQ(acquire(receiver, {"--utc"}).out, expected);
    EXPECT_EQ(acquire(receiver, {"--utc", "-o", receiver.path("a.gpx"), "--summary"}).out,
              expected);
}

TEST(Acquire, SummaryHasTheTimesOfThePlaceWhateverTheClockHere)
{
    const Receiver receiver;
    for (const char* const zone : {"TZ=UTC", "TZ=Asia/Tokyo"}) {
        const auto ran =
            magellangps({"acquire", "--device", receiver.path()}, {.environment = {zone}});
        EXPECT_THAT(ran.out, HasSubstr("2024-06-01 12:00:00  2024-06-01 12:00:01  Zurich  "));
    }
}

TEST(Acquire, KindsCanBeLeftOut)
{
    const Receiver receiver;
    EXPECT_THAT(acquire(receiver, {"--events", "--no-waypoints"}).out,
                Not(HasSubstr("\"kind\":3")));
    EXPECT_THAT(acquire(receiver, {"--events", "--no-routes"}).out, Not(HasSubstr("\"kind\":2")));
    EXPECT_THAT(acquire(receiver, {"--events", "--no-tracks"}).out, Not(HasSubstr("\"kind\":1")));
    const auto none =
        acquire(receiver, {"--events", "--no-waypoints", "--no-routes", "--no-tracks"});
    EXPECT_EQ(
        none.out,
        "{\"event\":\"gpsStateChange\",\"state\":1}\n{\"event\":\"gpsStateChange\",\"state\":0}\n"
        "{\"event\":\"result\",\"error\":null}\n");
    EXPECT_EQ(none.status, 0);
}

TEST(Acquire, OptionsObjectReachesTheDriverUnchanged)
{
    const Receiver receiver;
    const auto ran =
        acquire(receiver, {"--events", "--options", R"({"waypoints":false,"tracks":"no"})"});
    EXPECT_THAT(ran.out, Not(HasSubstr("\"kind\":3")));
    EXPECT_THAT(ran.out, HasSubstr("\"kind\":2"));
    EXPECT_THAT(ran.out, Not(HasSubstr("\"kind\":1")));
    EXPECT_EQ(ran.status, 0) << ran.err;
}

TEST(Acquire, OptionsObjectCanImport)
{
    const auto ran =
        magellangps({"acquire", "--driver", "magellan", "--events", "--options",
                     R"({"sourcePath":")" MAGELLAN_SOURCE_DIR R"(/samples/files/trip.log"})"});
    EXPECT_THAT(ran.out, HasSubstr("\"newTrack\""));
    EXPECT_EQ(ran.status, 0) << ran.err;
}

TEST(Acquire, DeviceCanBeAFolderWithOrWithoutASlash)
{
    const Receiver receiver;
    EXPECT_EQ(magellangps({"acquire", "--device", receiver.path(), "--events"}).out,
              kExpectedEvents);
    EXPECT_EQ(magellangps({"acquire", "--device", receiver.path() + "/", "--events"}).out,
              kExpectedEvents);
}

TEST(Acquire, DeviceIsChosenAmongSeveral)
{
    const Receiver first;
    const Receiver second;
    second.put("Tracks/a.log",
               support::sentences(
                   {"PMGNTRK,4630.00000,N,00715.00000,E,01200,M,100000.00,A,Other,010624"}));
    const auto ran = magellangps({"acquire", "--test-folder", first.path(), "--test-folder",
                                  second.path(), "--device", second.path(), "--events"});
    EXPECT_THAT(ran.out, HasSubstr("\"name\":\"Other\""));
    EXPECT_EQ(ran.status, 0);
}

TEST(Acquire, NamedDriverShowsItsOwnError)
{
    const auto ran = magellangps({"acquire", "--driver", "magellan", "--events"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out,
              R"({"event":"gpsStateChange","state":0}
{"event":"result","error":{"domain":"com.Orvane.GPSPlugin.ErrorDomain","code":-1,"description":"No location was selected for Magellan device","suggestion":"Please make sure your Magellan device is connected and mounted on the desktop, and try again","path":null}}
)");
    EXPECT_EQ(ran.err, "magellangps: No location was selected for Magellan device. Please make "
                       "sure your Magellan device is connected "
                       "and mounted on the desktop, and try again.\n");
}

TEST(Acquire, UnknownDriverOrDeviceIsStatus3)
{
    const Receiver receiver;
    const auto driver = acquire(receiver, {"--driver", "other"});
    EXPECT_EQ(driver.status, 3);
    EXPECT_THAT(driver.err, HasSubstr("magellan"));
    const auto device = acquire(receiver, {"--device", "/nowhere"});
    EXPECT_EQ(device.status, 3);
    EXPECT_THAT(device.err, HasSubstr(receiver.path()));
}

TEST(Acquire, QuietPrintsNothingButErrors)
{
    const Receiver receiver;
    receiver.put("Ways/a.rte", support::sentences({support::kLoop}));
    EXPECT_THAT(acquire(receiver, {"--events"}).err, HasSubstr("note: referencing Camp waypoint"));
    EXPECT_THAT(acquire(receiver, {"--events", "-q"}).err, IsEmpty());
}

TEST(Acquire, VerboseShowsTheSystemLogOnce)
{
    const Receiver receiver;
    receiver.put("Ways/a.rte", support::sentences({support::kLoop}));
    EXPECT_EQ(count(acquire(receiver, {"-v"}).err, "referencing Camp waypoint"), 1U);
}

TEST(Acquire, SignalEndsItBeforeTheNextFileAndKeepsWhatCame)
{
    // More records than the event queue holds, so that the plug-in still has files to read when the
    // signal arrives.
    const Receiver receiver;
    std::string points;
    for (int i = 0; i < 5'000; ++i)
        points += support::sentences(
            {"PMGNWPL,4630.00000,N,00715.00000,E,0001200,M,P" + std::to_string(i) + ",,ab"});
    for (int i = 0; i < 20; ++i)
        receiver.put("Points/" + std::to_string(i) + ".upt", points);
    receiver.put("trip.gpx", "old");
    support::Running program{{MAGELLAN_BIN_DIR "/magellangps", "acquire", "--device",
                              receiver.path(), "--events", "-o", receiver.path("trip.gpx")}};
    program.readUntil("wayPoint");
    program.send(SIGINT);
    EXPECT_THAT(program.readUntil("\"result\""), Not(HasSubstr("trackPoint")));
    const int status = program.end(0); // only waits
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 130) << status;
    EXPECT_EQ(receiver.read("trip.gpx"), "old");
    EXPECT_THAT(receiver.read("trip.partial.gpx"), HasSubstr("</gpx>"));
}

TEST(Acquire, DamagedLinesAreNamedAndChangeTheStatusOnlyIfStrict)
{
    const Receiver receiver;
    receiver.put("Tracks/a.log", support::sentences({support::kFirstFix}) + "$PMGNTRK,x*00\r\n" +
                                     support::sentences({support::kSecondFix}));
    const auto ran = acquire(receiver, {"-o", receiver.path("trip.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err,
              std::string{"note: 2 of 3 track points; 1 damaged: a.log line 2\n"} + kJumpNote);
    EXPECT_EQ(acquire(receiver, {"-o", receiver.path("trip.gpx"), "--strict"}).status, 1);
}

TEST(Acquire, LongTrackStreams)
{
    const Receiver receiver;
    std::string log;
    const auto pair = support::sentences({support::kFirstFix, support::kSecondFix});
    for (int i = 0; i < 50000; ++i)
        log += pair;
    receiver.put("Tracks/a.log", log);
    const auto ran = acquire(receiver, {"-o", receiver.path("a.gpx")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(count(receiver.read("a.gpx"), "<trkpt "), 100000U);
}

} // namespace
