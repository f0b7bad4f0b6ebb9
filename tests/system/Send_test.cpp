// SPDX-License-Identifier: MIT
// Sends with the built program: to receivers made by the tests and to a copy of the sample
// receiver.

#include "platform/System/PrivateMount.h"
#include "system/OpenCounter.h"
#include "system/Program.h"
#include "system/Receiver.h"
#include "system/Running.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <map>
#include <sstream>

#include <sys/mount.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;
using support::kSampleReceiver;
using support::magellangps;
using support::Ran;
using support::Receiver;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kTrip[] = R"(<gpx version="1.1" creator="test">
<wpt lat="46.123456789" lon="7.987654321"><ele>12.7</ele><name>Summit</name><cmt>windy</cmt></wpt>
<wpt lat="46.2" lon="7.3"><name>GC42</name><sym>Geocache</sym></wpt>
<rte><name>Ridge</name>
<rtept lat="46.123456789" lon="7.987654321"><ele>12.7</ele><time>2024-06-01T10:00:00Z</time><name>Summit</name><sym>No such symbol</sym></rtept>
<rtept lat="46.9" lon="7.1"><name>Valley</name></rtept></rte>
<trk><name>Walk</name><trkseg><trkpt lat="46.5" lon="7.5"><time>2024-06-01T10:00:00Z</time></trkpt></trkseg></trk>
</gpx>)";

// Every file of a folder with its content. Other entries have an empty content.
std::map<std::string, std::string> filesOf(const std::string& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator{folder}) {
        if (entry.is_directory())
            continue;
        std::ifstream file{entry.path(), std::ios::binary};
        files[entry.path().lexically_relative(folder).string()] = {
            std::istreambuf_iterator<char>{file}, {}};
    }
    return files;
}

class Send : public testing::Test {
protected:
    // Backups are written to the test's own folder.
    Ran send(const std::string& device, std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"send", "--device", device, "--backup", here_.path("kept")});
        return magellangps(words);
    }

    std::string sampleCopy() const
    {
        fs::copy(kSampleReceiver, here_.path("device"), fs::copy_options::recursive);
        return here_.path("device");
    }

    std::string trip() const { return here_.put("trip.gpx", kTrip); }
    std::string data(std::string_view json) const { return here_.put("data.json", json); }

    support::TemporaryFolder here_;
};

// The records of one kind that an acquire reports, each as a text with the precision of a sentence:
// five decimals of a minute, whole metres, and no time without a day.
std::vector<std::string> recordsOf(const std::string& device, const std::string& event)
{
    const auto rounded = [](ordered_json point) {
        point["latitude"] = std::llround(point["latitude"].get<double>() * 6e6);
        point["longitude"] = std::llround(point["longitude"].get<double>() * 6e6);
        point["altitude"] = std::trunc(point["altitude"].get<double>());
        if (point["time"] < 315'532'800) // 1980
            point["time"] = 0;
        return point;
    };
    const auto ran = magellangps({"acquire", "--device", device, "--events"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    std::vector<std::string> records;
    std::istringstream lines{ran.out};
    for (std::string line; std::getline(lines, line);) {
        auto json = ordered_json::parse(line);
        if (json["event"] != event)
            continue;
        if (json.contains("point"))
            json["point"] = rounded(json["point"]);
        for (const char* key : {"extra", "route"}) {
            if (!json.contains(key))
                continue;
            if (json[key].contains("point"))
                json[key]["point"] = rounded(json[key]["point"]);
            json[key].erase("trackName"); // no device stores it
        }
        records.push_back(json.dump());
    }
    std::sort(records.begin(), records.end());
    records.erase(std::unique(records.begin(), records.end()), records.end());
    return records;
}

TEST_F(Send, SampleReceiverSentToItselfHoldsNothingButTheSameRecords)
{
    const auto device = sampleCopy();
    std::map<std::string, std::vector<std::string>> before;
    for (const char* event : {"wayPoint", "newRoute", "trackPoint"})
        before[event] = recordsOf(device, event);
    ASSERT_EQ(magellangps({"acquire", "--device", device, "-o", here_.path("all.gpx")}).status, 0);
    const auto ran = send(device, {here_.path("all.gpx"), "-q"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.err, IsEmpty());
    for (const auto& [event, records] : before)
        EXPECT_EQ(recordsOf(device, event), records) << event;
}

TEST_F(Send, SampleReceiverSentToAnEmptyOneArrivesWhole)
{
    const support::TemporaryFolder device;
    for (const char* folder : {"USBTRANS", "My POIs", "Geocaches", "Routes", "Track Logs"})
        device.makeFolder(folder);
    fs::copy(std::string{kSampleReceiver} + "/USBTRANS", device.path("USBTRANS"),
             fs::copy_options::recursive);
    ASSERT_EQ(
        magellangps({"acquire", "--device", kSampleReceiver, "-o", here_.path("all.gpx")}).status,
        0);
    const auto ran = send(device.path(), {here_.path("all.gpx")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    for (const char* event : {"wayPoint", "newRoute", "trackPoint"})
        EXPECT_EQ(recordsOf(device.path(), event), recordsOf(kSampleReceiver, event)) << event;
}

TEST_F(Send, SecondSendChangesNothing)
{
    const auto device = sampleCopy();
    ASSERT_EQ(magellangps({"acquire", "--device", device, "-o", here_.path("all.gpx")}).status, 0);
    for (const auto& file : {here_.path("all.gpx"), trip()}) {
        ASSERT_EQ(send(device, {file}).status, 0);
        const auto before = filesOf(device);
        const auto ran = send(device, {file});
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.out, HasSubstr("\nNothing is new: the device holds everything already."));
        EXPECT_EQ(filesOf(device), before);
    }
}

TEST_F(Send, SendOfWhatTheDeviceHoldsWritesNothing)
{
    const auto device = sampleCopy();
    const auto before = filesOf(device);
    ASSERT_EQ(magellangps({"acquire", "--device", device, "-o", here_.path("all.gpx")}).status, 0);
    const auto ran = send(device, {here_.path("all.gpx")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("On the device already, and not sent again: 46 waypoints, 14 "
                                   "geocaches, 6 routes, 6 tracks (2484 points).\n"));
    EXPECT_EQ(filesOf(device), before);
}

TEST_F(Send, DataIsSentAsItIsAndThePlanNamesThePointsThatGetANumber)
{
    const support::Receiver receiver;
    const auto file = data(R"({"route":[{"name":"Way","points":[)"
                           R"({"name":"P","point":{"latitude":46.123456789,"longitude":7}},)"
                           R"({"name":"Q","point":{"latitude":46.987654321,"longitude":7}}]}]})");
    const auto once = send(receiver.path(), {"--data", file});
    EXPECT_EQ(once.status, 0) << once.err;
    EXPECT_THAT(once.out, Not(HasSubstr("becomes")));
    const auto twice = send(receiver.path(), {"--data", file});
    EXPECT_EQ(twice.status, 0) << twice.err;
    EXPECT_THAT(twice.out, HasSubstr("2 points of the route \"Way\" get other names, because "
                                     "different points have theirs: \"P\" becomes \"P 1\", \"Q\" "
                                     "becomes \"Q 1\".\n"));
    EXPECT_THAT(receiver.read("Ways/Default Route File.rte"), HasSubstr(",Way,P 1,a,Q 1,a*"));
}

// A driver would number the point "P", and write it over the device's own "P 1".
TEST_F(Send, RoutePointWithAnotherCommentGetsANameThatIsFree)
{
    const Receiver receiver;
    receiver.put("Ways/Default Route File.rte",
                 support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P,one,a",
                                     "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,P 1,,a",
                                     "PMGNRTE,1,1,c,1,Old,P,a,P 1,a"}));
    const auto file =
        here_.put("new.gpx", R"(<gpx version="1.1" creator="test"><rte><name>New</name>
<rtept lat="46" lon="7"><name>P</name><cmt>two</cmt></rtept>
<rtept lat="46" lon="7"><name>P</name><cmt>one</cmt></rtept></rte></gpx>)");
    const auto first = send(receiver.path(), {file});
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.out, HasSubstr(R"(route point name: "P" becomes "P 2")"));
    const auto files = filesOf(receiver.path());
    EXPECT_EQ(
        files.at("Ways/Default Route File.rte"),
        support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P,one,a",
                            "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,P 1,,a",
                            "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P 2,two,a",
                            "PMGNRTE,1,1,c,1,Old,P,a,P 1,a", "PMGNRTE,1,1,c,2,New,P 2,a,P,a"}) +
            gps::NMEAUtils::addChecksumToNMEASentence("PMGNCMD,END"));
    EXPECT_THAT(send(receiver.path(), {file}).out, HasSubstr("Nothing is new"));
    EXPECT_EQ(filesOf(receiver.path()), files);
}

TEST_F(Send, DryRunAndSendAgreeOnGeocachesOfOneName)
{
    const Receiver receiver;
    const auto file =
        data(R"({"waypoint":[)"
             R"({"name":"GC7","symbol":"Geocache","point":{"latitude":46,"longitude":7}},)"
             R"({"name":"GC7","symbol":"Geocache","point":{"latitude":47,"longitude":7}}]})");
    const auto dry = send(receiver.path(), {"--data", file, "--dry-run"});
    EXPECT_EQ(dry.status, 1);
    EXPECT_THAT(dry.err, HasSubstr("Two different geocaches have the name \"GC7\"."));
    EXPECT_THAT(dry.err, HasSubstr("The geocache \"GC7\" would not be on the device.\n"));
    const auto sent = send(receiver.path(), {"--data", file});
    EXPECT_EQ(sent.status, 1);
    EXPECT_THAT(sent.err, HasSubstr("The geocache \"GC7\" is not on the device.\n"));
    const auto document =
        ordered_json::parse(send(receiver.path(), {"--data", file, "--dry-run", "--json"}).out);
    EXPECT_EQ(document["missingRecords"],
              ordered_json::parse(R"([{"kind":"geocache","name":"GC7"}])"));
}

TEST_F(Send, DryRunAndSendAgreeThatNoTrackNameIsFree)
{
    const Receiver receiver;
    for (int number = 1; number < 999; ++number) { // leaves one
        const auto digits = std::to_string(number);
        receiver.put("Tracks/TKLG" + std::string(3 - digits.size(), '0') + digits + ".log", "");
    }
    const auto file = here_.put("tracks.gpx", R"(<gpx version="1.1" creator="test">
<trk><name>A</name><trkseg><trkpt lat="46" lon="7"/></trkseg></trk>
<trk><name>B</name><trkseg><trkpt lat="47" lon="7"/></trkseg></trk></gpx>)");
    const auto dry = send(receiver.path(), {file, "--dry-run"});
    EXPECT_EQ(dry.status, 1);
    EXPECT_EQ(dry.err, "magellangps: The track \"B\" would not be on the device.\n"
                       "magellangps: No number is free for another track. Remove tracks from the "
                       "device, and send again.\n");
    const auto sent = send(receiver.path(), {file});
    EXPECT_EQ(sent.status, 1);
    EXPECT_THAT(sent.err, HasSubstr("The track \"B\" is not on the device.\n"));
    EXPECT_THAT(sent.err, Not(HasSubstr("\"A\"")));
    const auto again = send(receiver.path(), {file, "--json"});
    EXPECT_EQ(again.status, 1) << "the name is taken now";
    EXPECT_EQ(ordered_json::parse(again.out)["missingRecords"],
              ordered_json::parse(R"([{"kind":"track","name":"B"}])"));
}

TEST_F(Send, DatesThatNoGeocacheCanHaveAreListed)
{
    const Receiver receiver;
    const auto file = here_.put("caches.gpx", R"(<gpx version="1.1" creator="test">
<wpt lat="46" lon="7"><time>2085-01-01T00:00:00Z</time><name>GC7</name><sym>Geocache</sym></wpt>
<wpt lat="47" lon="7"><time>2079-12-31T00:00:00Z</time><name>GC8</name><sym>Geocache Found</sym></wpt>
</gpx>)");
    const auto ran = send(receiver.path(), {file, "--dry-run"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("The device does not store the time of 1 geocache: not from "
                                   "1980 to 2079.\n"));
    EXPECT_THAT(ran.out, HasSubstr("1 geocache was found without a date that the device stores, "
                                   "and will not count as found.\n"));
}

// The driver would number "P", and write it over the device's own "P 1".
TEST_F(Send, ExactNamesThatWouldChangeARouteAreNotSent)
{
    const Receiver receiver;
    receiver.put("Ways/Default Route File.rte",
                 support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P,one,a",
                                     "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,P 1,,a",
                                     "PMGNRTE,1,1,c,1,Old,P,a,P 1,a"}));
    const auto before = filesOf(receiver.path());
    const auto twoRoutes = here_.put("two.gpx", R"(<gpx version="1.1" creator="test">
<rte><name>A</name><rtept lat="46" lon="7"><name>P</name><cmt>x</cmt></rtept></rte>
<rte><name>B</name><rtept lat="46" lon="7"><name>P</name><cmt>y</cmt></rtept></rte></gpx>)");
    const Receiver other;
    other.put("Ways/Default Route File.rte",
              support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P,one,a",
                                  "PMGNRTE,1,1,c,1,Old,P,a"}));
    EXPECT_THAT(send(other.path(), {twoRoutes, "--exact-names"}).err,
                HasSubstr("The route \"A\" would be changed"));
    EXPECT_EQ(send(other.path(), {twoRoutes}).status, 0);
    const auto exact = [&](const std::string& points) {
        const auto file = here_.put("r.gpx", R"(<gpx version="1.1" creator="test"><rte><name>New)"
                                             "</name>" +
                                                 points + "</rte></gpx>");
        return send(receiver.path(), {file, "--exact-names"});
    };
    const auto ran = exact(R"(<rtept lat="46" lon="7"><name>P</name><cmt>two</cmt></rtept>)");
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("The route \"Old\" would be changed, because a point of another "
                                   "route would get the number and so the name of one of its "
                                   "points."));
    EXPECT_EQ(filesOf(receiver.path()), before);
    const auto same = exact(R"(<rtept lat="46" lon="7"><name>P</name><cmt>one</cmt></rtept>)");
    EXPECT_EQ(same.status, 0) << same.err;
    const auto numbered = exact(R"(<rtept lat="1" lon="7"><name>P 1</name></rtept>)");
    EXPECT_EQ(numbered.status, 0) << numbered.err << "\"P 1 1\" is free";
}

// No route uses the device's "P". The driver numbers the sent one, and would write it over "P 1".
TEST_F(Send, RouteThatWouldTakeOverAPointOfTheDeviceGetsAFreeNameOrIsNotSent)
{
    for (const std::string route : {"Old", ""}) {
        const Receiver receiver;
        receiver.put("Ways/Default Route File.rte",
                     support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,P,,a",
                                         "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,P 1,,a"}) +
                         (route.empty() ? "" : support::sentences({"PMGNRTE,1,1,c,1,Old,P 1,a"})));
        const auto before = filesOf(receiver.path());
        const auto file = here_.put("r.gpx", R"(<gpx version="1.1" creator="test"><rte>
<name>New</name><rtept lat="48" lon="7"><name>P</name></rtept></rte></gpx>)");
        const auto exact = send(receiver.path(), {file, "--exact-names"});
        EXPECT_EQ(exact.status, 1) << exact.out;
        EXPECT_THAT(exact.err,
                    HasSubstr(route.empty()
                                  ? "The point \"P 1\", which no route of the device uses, would "
                                    "be replaced by a point of a route that would get its name."
                                  : "The route \"Old\" would be changed, because a point of "
                                    "another route would get the number and so the name of one "
                                    "of its points."));
        EXPECT_EQ(filesOf(receiver.path()), before) << exact.out;
        const auto sent = send(receiver.path(), {file});
        EXPECT_EQ(sent.status, 0) << sent.err;
        EXPECT_THAT(sent.out, HasSubstr(R"(route point name: "P" becomes "P 2")"));
        EXPECT_THAT(send(receiver.path(), {file}).out, HasSubstr("Nothing is new"));
    }
}

TEST_F(Send, RecordWhoseNameAnotherFileHoldsDifferentlyIsNotSentTwice)
{
    const Receiver receiver;
    const auto file = here_.put("more.gpx", R"(<gpx version="1.1" creator="test">
<wpt lat="1" lon="2"><name>Camp</name></wpt>
<wpt lat="1" lon="2"><name>GC1</name><sym>Geocache</sym></wpt>
<rte><name>Loop</name><rtept lat="1" lon="2"><name>New</name></rtept></rte></gpx>)");
    const auto first = send(receiver.path(), {file});
    EXPECT_EQ(first.status, 0) << first.err;
    const auto files = filesOf(receiver.path());
    const auto second = send(receiver.path(), {file});
    EXPECT_EQ(second.status, 0) << second.err;
    EXPECT_EQ(second.out, "On the device already, and not sent again: 1 waypoint, 1 geocache, 1 "
                          "route.\nNothing is new: the device holds everything already. --again "
                          "sends it.\n");
    EXPECT_EQ(filesOf(receiver.path()), files);
    EXPECT_THAT(send(receiver.path(), {file, "--again"}).out, HasSubstr("3 files written"));
}

TEST_F(Send, AgainSendsWhatTheDeviceHolds)
{
    const Receiver receiver;
    ASSERT_EQ(send(receiver.path(), {trip()}).status, 0);
    const auto before = filesOf(receiver.path());
    const auto ran = send(receiver.path(), {trip(), "--again"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    auto after = filesOf(receiver.path());
    EXPECT_EQ(after["Tracks/TKLG001.log"], before.at("Tracks/TKLG000.log"));
    after.erase("Tracks/TKLG001.log");
    EXPECT_EQ(after, before);
}

constexpr char kBrokenTrack[] =
    R"(<gpx version="1.1" creator="test"><trk><name>Walk</name>
<trkseg><trkpt lat="46.1" lon="7"><ele>1</ele></trkpt></trkseg>
<trkseg><trkpt lat="46.2" lon="7"><ele>2</ele></trkpt></trkseg></trk></gpx>)";

TEST_F(Send, EachSegmentOfATrackBecomesATrack)
{
    const Receiver receiver;
    const auto ran = send(receiver.path(), {here_.put("t.gpx", kBrokenTrack)});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("The track \"Walk\" has 2 segments, which become 2 tracks.\n"));
    EXPECT_THAT(receiver.read("Tracks/TKLG000.log"), HasSubstr("4606.00000,N"));
    EXPECT_THAT(receiver.read("Tracks/TKLG001.log"), HasSubstr("4612.00000,N"));
}

TEST_F(Send, SegmentsAreJoinedOnRequest)
{
    const Receiver receiver;
    const auto ran = send(receiver.path(), {here_.put("t.gpx", kBrokenTrack), "--join-segments"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("sent: 1 track (2 points)"));
    EXPECT_THAT(receiver.read("Tracks/TKLG000.log"),
                testing::AllOf(HasSubstr("4606.00000,N"), HasSubstr("4612.00000,N")));
    EXPECT_FALSE(fs::exists(receiver.path("Tracks/TKLG001.log")));
}

TEST_F(Send, RoutesAndTracksWithoutPointsAreLeftOutAndMakeNoFile)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    const auto file = here_.put("empty.gpx", R"(<gpx version="1.1"><rte><name>R</name></rte>
<trk><name>T</name><trkseg/></trk><trk/></gpx>)");
    const auto ran = send(receiver.path(), {file, "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("The route \"R\" has no points, so it was left out.\n"));
    EXPECT_THAT(ran.err, HasSubstr("The track \"T\" has no points, so it was left out.\n"));
    EXPECT_EQ(filesOf(receiver.path()), before);
    const auto document = ordered_json::parse(ran.out);
    EXPECT_EQ(document["complete"], false);
    EXPECT_EQ(document["leftOut"]["tracks"], 2);
}

TEST_F(Send, StatusAndDocumentAgreeIfAWaypointIsSkipped)
{
    const Receiver receiver;
    const auto file = here_.put("w.gpx", R"(<gpx version="1.1"><wpt lat="97" lon="7"/>
<wpt lat="46" lon="7"><name>A</name></wpt></gpx>)");
    const auto ran = send(receiver.path(), {file, "--json"});
    EXPECT_EQ(ran.status, 1);
    const auto document = ordered_json::parse(ran.out);
    EXPECT_EQ(document["status"], 1);
    EXPECT_EQ(document["complete"], false);
    EXPECT_EQ(document["leftOut"]["waypoints"], 1);
    EXPECT_EQ(document["sent"]["waypoints"], 1);
}

TEST_F(Send, ExactNamesThatBecomeOneOrNothingAreNotSent)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    const auto expectRefused = [&](const std::string& waypoints, const char* why) {
        const auto file = here_.put("t.gpx", "<gpx version=\"1.1\">" + waypoints + "</gpx>");
        for (const char* const option : {"--dry-run", "--again"}) {
            const auto ran = send(receiver.path(), {file, "--exact-names", option});
            EXPECT_EQ(ran.status, 1);
            EXPECT_THAT(ran.err, HasSubstr(why));
        }
        EXPECT_EQ(filesOf(receiver.path()), before);
        EXPECT_FALSE(fs::exists(here_.path("kept")));
    };
    expectRefused("<wpt lat=\"46\" lon=\"7\"><name>Hütte</name></wpt>"
                  "<wpt lat=\"47\" lon=\"7\"><name>Htte</name></wpt>",
                  "The waypoints \"Hütte\" and \"Htte\" would both be stored as \"Htte\". Give "
                  "them different names in the file, or send without --exact-names.");
    expectRefused("<wpt lat=\"46\" lon=\"7\"><name>\u2603</name></wpt>",
                  "The device can store no character of the name \"\u2603\" of a waypoint.");
    expectRefused("<wpt lat=\"46\" lon=\"9\"><name>Camp\u2603</name></wpt>",
                  "The waypoint \"Camp\u2603\" would be stored as \"Camp\", and the device holds "
                  "another one of this name.");
}

TEST_F(Send, ExactNamesAreRecognisedWhenTheyAreSentAgain)
{
    const Receiver receiver;
    const auto file = here_.put(
        "t.gpx", R"(<gpx version="1.1"><wpt lat="46" lon="7"><name>Hütte</name></wpt></gpx>)");
    const auto ran = send(receiver.path(), {file, "--exact-names"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("waypoint name: \"Hütte\" becomes \"Htte\", without \"ü\"\n"));
    EXPECT_THAT(send(receiver.path(), {file, "--exact-names"}).out,
                HasSubstr("Nothing is new: the device holds everything already."));
}

TEST_F(Send, TimesAndElevationsThatNoFileHoldsAreListedAndRecognised)
{
    const Receiver receiver;
    const auto file = here_.put("t.gpx", R"(<gpx version="1.1"><trk><trkseg>
<trkpt lat="46" lon="7"><ele>1</ele><time>2080-01-01T00:00:00Z</time></trkpt>
<trkpt lat="46" lon="8"><ele>1000000</ele><time>1979-12-31T23:59:59Z</time></trkpt>
</trkseg></trk></gpx>)");
    const auto ran = send(receiver.path(), {file});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\nThe device does not store the times of 2 track points: not "
                                   "from 1980 to 2079.\n"));
    EXPECT_THAT(ran.out, HasSubstr("\n1 elevation is not from -9999 m to 99999 m, which a device "
                                   "has room for, and counts as unknown.\n"));
    EXPECT_THAT(receiver.read("Tracks/TKLG000.log"),
                testing::AllOf(HasSubstr(",E,00001,M,,A,,*"), HasSubstr(",E,00000,M,,A,,*")));
    EXPECT_THAT(send(receiver.path(), {file}).out,
                HasSubstr("Nothing is new: the device holds everything already."));
}

TEST_F(Send, TextsWithoutAPlaceOnTheDeviceAreListedOncePerKind)
{
    const Receiver receiver;
    const auto file = here_.put("t.gpx", R"(<gpx version="1.1">
<wpt lat="46" lon="7"><ele>1</ele><name>A</name><cmt>c</cmt><desc>d</desc>
<link href="http://a.example"/><link href="http://b.example"/><type>hut</type></wpt>
<wpt lat="46" lon="8"><ele>1</ele><name>B</name><desc>kept</desc><type>hut</type></wpt>
<rte><name>R</name><desc>kept</desc><type>walk</type>
<rtept lat="46" lon="7"><ele>1</ele><name>A</name><link href="http://c.example"/></rtept></rte>
<trk><cmt>c</cmt><desc>d</desc><trkseg><trkpt lat="46" lon="7"><ele>1</ele></trkpt></trkseg></trk>
</gpx>)");
    const auto ran = send(receiver.path(), {file, "--json"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ordered_json::parse(ran.out)["lostFields"],
              ordered_json::parse(R"([{"kind":"waypoints","field":"description","records":1},)"
                                  R"({"kind":"waypoints","field":"link","records":1},)"
                                  R"({"kind":"waypoints","field":"type","records":2},)"
                                  R"({"kind":"routes","field":"type","records":1},)"
                                  R"({"kind":"route points","field":"link","records":1},)"
                                  R"({"kind":"tracks","field":"comment","records":1},)"
                                  R"({"kind":"tracks","field":"description","records":1}])"));
    EXPECT_THAT(
        send(receiver.path(), {file, "--again"}).out,
        testing::AllOf(HasSubstr("\nThe device does not store the types of 2 waypoints.\n"),
                       HasSubstr("\nThe device does not store the link of 1 route point.\n")));
    EXPECT_THAT(send(receiver.path(), {file}).out, Not(HasSubstr("does not store")));
}

TEST_F(Send, TripIsMergedIntoWhatIsThere)
{
    const Receiver receiver;
    const auto present = support::sentences({support::kCamp});
    receiver.put("Points/Default POI File.upt", present);
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out,
              "create: Tracks/TKLG000.log\nmerge into: Points/Default POI File.upt\ncreate: "
              "Caches/Default Geocache File.gs\n"
              "create: Ways/Default Route File.rte\n"
              "The device does not store the name of 1 track: \"Walk\".\n"
              "The elevation of 1 track point is unknown and will be stored as 0.\n"
              "The elevation of 1 geocache is unknown and will be stored as 0.\n"
              "The device does not store the time of 1 route point.\n"
              "The elevation of 1 route point is unknown and will be stored as 0.\n"
              "The symbol \"No such symbol\" has no "
              "icon and becomes \"Waypoint\".\n"
              "sent: 1 waypoint, 1 geocache, 1 route, 1 track (1 point); 4 files written and read "
              "back\n");
    EXPECT_EQ(
        receiver.read("Points/Default POI File.upt"),
        present +
            support::sentences({"PMGNWPL,4607.40741,N,00759.25926,E,0000012,M,Summit,windy,a"}) +
            "$PMGNCMD,END*3D");
    EXPECT_EQ(receiver.read("Points/a.upt"), support::sentences({support::kCamp, support::kHut}));
}

// The snapshot that the plan and the backup are made from, the merge, and the check. What describes
// the receiver is read again before the backup and before the first write, to see whether it is
// still the same, and its identifier once more after the last write.
TEST_F(Send, EachFileIsOpenedAtMostTwiceBeforeItIsWrittenAndOnceAfter)
{
    const Receiver receiver;
    const std::vector<std::string> defaults{"Points/Default POI File.upt",
                                            "Caches/Default Geocache File.gs",
                                            "Ways/Default Route File.rte"};
    receiver.put(defaults[0], support::sentences({support::kCamp}));
    receiver.put(defaults[1], support::sentences({support::kCache}));
    receiver.put(defaults[2], support::sentences({support::kCamp, support::kHut, support::kLoop}));
    support::OpenCounter counter{receiver.path()};
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 0) << ran.err;
    auto opens = counter.opens();
    for (const auto& [file, count] : opens) {
        const bool isIdentifier = file == "USBTRANS/UNIT_ID.DAT";
        EXPECT_LE(count.before, isIdentifier ? 5 : file.starts_with("USBTRANS/") ? 4 : 2) << file;
        EXPECT_LE(count.after, 1) << file;
    }
    for (const auto& file : defaults) {
        EXPECT_EQ(opens[file].before, 2) << file;
        EXPECT_EQ(opens[file].after, 1) << file;
    }
    EXPECT_EQ(opens["Tracks/TKLG000.log"].before, 0);
    EXPECT_EQ(opens["Tracks/TKLG000.log"].after, 1);
    EXPECT_EQ(opens["Tracks/a.log"].before, 2) << "to recognise its tracks, and for the backup";
}

TEST_F(Send, NumberOfOpensDoesNotDependOnTheNumberOfSymbols)
{
    const Receiver receiver;
    std::string route = "<gpx version=\"1.1\"><rte><name>R</name>";
    for (int i = 0; i < 20; ++i) {
        const auto number = std::to_string(i);
        route += "<rtept lat=\"46." + number + "\" lon=\"7\"><name>P" + number +
                 "</name><sym>Symbol " + number + "</sym></rtept>";
    }
    const auto file = here_.put("r.gpx", route + "</rte></gpx>");
    ASSERT_EQ(send(receiver.path(), {file}).status, 0);
    support::OpenCounter counter{receiver.path()};
    EXPECT_EQ(send(receiver.path(), {file}).status, 0);
    for (const auto& [path, count] : counter.opens())
        EXPECT_LE(count.before + count.after, 3) << path;
}

TEST_F(Send, EventsAreTheCallsOfTheSend)
{
    const Receiver receiver;
    const auto ran = send(receiver.path(), {trip(), "--events", "-q"});
    EXPECT_EQ(ran.out, R"({"event":"startSending","label":"Tracks","kind":1}
{"event":"endSending","kind":1}
{"event":"startSending","label":"Waypoints","kind":3}
{"event":"endSending","kind":3}
{"event":"startSending","label":"Routes","kind":2}
{"event":"endSending","kind":2}
{"event":"gpsStateChange","state":0}
{"event":"result","error":null}
)");
    EXPECT_THAT(ran.err, IsEmpty());
}

TEST_F(Send, DryRunLeavesTheDeviceUnchanged)
{
    const auto device = sampleCopy();
    const auto before = filesOf(device);
    const auto times = [&] {
        std::map<std::string, fs::file_time_type> all;
        for (const auto& entry : fs::recursive_directory_iterator{device})
            all[entry.path().string()] = entry.last_write_time();
        return all;
    };
    const auto timesBefore = times();
    const auto ran = send(device, {trip(), "--dry-run"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("create: Routes/Default Route File.rte\n"));
    EXPECT_EQ(filesOf(device), before);
    EXPECT_EQ(times(), timesBefore);
    EXPECT_FALSE(fs::exists(here_.path("kept")));
}

// The plan does not fit into the pipe, so the program is still printing it when the signal comes.
TEST_F(Send, PlanOfADryRunIsWholeAlthoughASignalComes)
{
    const support::Receiver receiver;
    std::string gpx = "<gpx version=\"1.1\">";
    for (int i = 0; i < 2000; ++i)
        gpx += "<wpt lat=\"46.5\" lon=\"7\"><name>W" + std::to_string(i) + "</name><cmt>\u2603" +
               std::to_string(i) + std::string(100, 'x') + " W" + std::to_string(i) +
               "</cmt></wpt>";
    support::Running dryRun{{MAGELLAN_BIN_DIR "/magellangps", "send",
                             here_.put("many.gpx", gpx + "</gpx>"), "--device", receiver.path(),
                             "--no-backup", "--dry-run"}};
    EXPECT_THAT(dryRun.readUntil("becomes"), Not(HasSubstr("W1999")));
    dryRun.send(SIGINT);
    const auto printed = dryRun.readUntil("Dry run: nothing was sent.\n");
    EXPECT_THAT(printed, HasSubstr("W1999"));
    EXPECT_THAT(printed, EndsWith("Dry run: nothing was sent.\n"));
    EXPECT_EQ(dryRun.end(0), 0);
}

// A send that has printed the first part of its plan and waits for somebody to read the rest: it
// has read the device, and has written nothing.
class SendThatWaits : public Send {
protected:
    SendThatWaits()
    {
        std::string gpx = "<gpx version=\"1.1\">";
        for (int i = 0; i < 2000; ++i)
            gpx += "<wpt lat=\"46.5\" lon=\"7\"><name>W" + std::to_string(i) +
                   "</name><cmt>\u2603" + std::string(100, 'x') + "</cmt></wpt>";
        send_.emplace(std::vector<std::string>{MAGELLAN_BIN_DIR "/magellangps", "send",
                                               here_.put("many.gpx", gpx + "</gpx>"), "--device",
                                               receiver_.path(), "--backup", here_.path("kept")});
        send_->readUntil("becomes");
    }

    // Reads the rest. @return  everything that it has printed
    std::string finish(int status)
    {
        const auto printed = send_->readToEnd();
        EXPECT_EQ(WEXITSTATUS(send_->end(0)), status);
        return printed;
    }

    // The content of a file in the only backup.
    std::string inBackup(const std::string& file) const
    {
        const auto backup = *fs::directory_iterator{here_.path("kept/42")};
        std::ifstream content{backup.path() / "files" / file, std::ios::binary};
        return {std::istreambuf_iterator<char>{content}, {}};
    }

    Receiver receiver_;
    std::optional<support::Running> send_;
};

TEST_F(SendThatWaits, ChangeByAnotherProgramIsPlannedAgainAndIsInTheBackup)
{
    const auto changed = support::sentences({support::kCamp});
    receiver_.put("Points/Default POI File.upt", changed);
    receiver_.put("Tracks/TKLG000.log", support::sentences({support::kFirstFix}));
    const auto printed = finish(0);
    EXPECT_THAT(printed, HasSubstr("\nmerge into: Points/Default POI File.upt\n"))
        << "the second plan";
    EXPECT_THAT(printed, HasSubstr("sent: 2000 waypoints; 1 file written and read back"));
    EXPECT_THAT(receiver_.read("Points/Default POI File.upt"),
                testing::AllOf(testing::StartsWith(changed), HasSubstr(",W1999,")));
    EXPECT_EQ(inBackup("Points/Default POI File.upt"), changed);
    EXPECT_EQ(inBackup("Tracks/TKLG000.log"), receiver_.read("Tracks/TKLG000.log"));
}

TEST_F(SendThatWaits, NothingIsSentToAnotherReceiver)
{
    receiver_.put("USBTRANS/UNIT_ID.DAT", "Serial Number=43\r\n");
    const auto before = filesOf(receiver_.path());
    EXPECT_THAT(finish(1), Not(HasSubstr("sent:")));
    EXPECT_EQ(filesOf(receiver_.path()), before);
    EXPECT_FALSE(fs::exists(here_.path("kept")));
}

TEST_F(SendThatWaits, NothingIsSentToAReceiverThatIsGone)
{
    fs::remove_all(receiver_.path());
    EXPECT_THAT(finish(1), Not(HasSubstr("sent:")));
    EXPECT_FALSE(fs::exists(here_.path("kept")));
}

TEST_F(Send, NullDataSendsNothing)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    const auto ran = send(receiver.path(), {"--data", data("null"), "--events"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(
        ran.out,
        "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":null}\n");
    EXPECT_EQ(filesOf(receiver.path()), before);
}

TEST_F(Send, NullDataIsAnnouncedToAReader)
{
    const Receiver receiver;
    const auto ran = send(receiver.path(), {"--data", data("null")});
    EXPECT_EQ(ran.out, "Nothing was sent: the data file is null.\n");
}

TEST_F(Send, ElevationOfDataThatNoFieldHasRoomForCountsAsUnknown)
{
    for (const char* const metres : {"1e9", "100000", "-10000"}) {
        const Receiver receiver;
        const auto ran =
            send(receiver.path(),
                 {"--data", data(R"({"waypoint":[{"name":"Z","point":{"latitude":46,"longitude":7,)"
                                 R"("altitude":)" +
                                 std::string{metres} + R"(,"time":0,"reserved":0}}]})")});
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.out, HasSubstr("1 elevation is not from -9999 m to 99999 m")) << metres;
        EXPECT_THAT(ran.out, HasSubstr("sent: 1 waypoint"));
        bool isThere = false;
        for (const auto& [path, content] : filesOf(receiver.path()))
            isThere = isThere || content.find("E,0000000,M,Z,") != std::string::npos;
        EXPECT_TRUE(isThere) << metres;
    }
}

TEST_F(Send, DataOfOneKindHasOnlyItsOwnBracket)
{
    const Receiver receiver;
    const auto ran = send(receiver.path(), {"--data", data(R"({"route":[]})"), "--events"});
    EXPECT_THAT(ran.out, Not(HasSubstr("\"kind\":1")));
    EXPECT_THAT(ran.out, Not(HasSubstr("\"kind\":3")));
    EXPECT_EQ(ran.status, 0) << ran.err;
}

TEST_F(Send, BadInputSendsNothing)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"--data", data("{\"waypoint\":")},
             {"--data", here_.put("list.json", "[]")},
             {"--data", here_.path("none.json")},
             {"--data", here_.put("key.json", R"({"waypoints":[]})")},
             {"--data", here_.put("type.json", R"({"track":{}})")},
             {"--data", here_.put("twice.json", R"({"waypoint":[{"name":"A","name":"B"}]})")},
             {here_.put("cut.gpx", "<gpx><wpt lat=\"1\" lon=\"2\">")},
             {trip(), here_.put("no.gpx", "text")},
             {here_.path()},
             {here_.path("none.gpx")}}) {
        const auto ran = send(receiver.path(), words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.out, IsEmpty());
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
    EXPECT_EQ(filesOf(receiver.path()), before);
}

TEST_F(Send, TextsAreMadeReadableAndNamesStayDifferent)
{
    const Receiver receiver;
    const auto file = here_.put(
        "t.gpx",
        R"(<gpx version="1.1"><wpt lat="46" lon="7"><name>Überschreitung der Haute Route</name></wpt>
<wpt lat="47" lon="7"><name>Überschreitung der Haute Cime</name><cmt>Москва</cmt></wpt></gpx>)");
    const auto ran = send(receiver.path(), {file});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\"Москва\" becomes \"Moskva\""));
    EXPECT_THAT(receiver.read("Points/Default POI File.upt"), HasSubstr(",Uberschreitung der H,"));
    EXPECT_THAT(receiver.read("Points/Default POI File.upt"),
                HasSubstr(",Uberschreitung der 2,Moskva,"));
}

TEST_F(Send, RecordThatCannotArriveIsStatus1)
{
    const Receiver receiver;
    for (
        const char* json :
        {R"({"waypoint":[{"name":"A","point":{"latitude":97}}]})", R"({"waypoint":[{"point":{}}]})",
         R"({"waypoint":[{"name":"A","point":{"latitude":1}},{"name":"A","point":{"latitude":2}}]})"}) {
        const auto ran = send(receiver.path(), {"--data", data(json)});
        EXPECT_EQ(ran.status, 1) << json;
        EXPECT_THAT(ran.err, HasSubstr("is not on the device."));
    }
}

TEST_F(Send, DataThatTheDeviceWouldConfuseIsSentWithAWarningAndStatus1)
{
    struct Row {
        const char* json;
        const char* warning;
    };
    for (const auto& [json, warning] : std::vector<Row>{
             {R"({"waypoint":[{"name":"A,B","point":{"latitude":1}},)"
              R"({"name":"AB","point":{"latitude":2}}]})",
              "The waypoints \"A,B\" and \"AB\" would both be stored as \"AB\". Give them "
              "different names in the file."},
             {R"({"waypoint":[{"name":"Ä","point":{"latitude":1}}]})",
              "The device can store no character of the name \"Ä\" of a waypoint. Give it a name "
              "in the file."},
             {R"({"route":[{"name":"L","points":[{"name":"P","point":{"latitude":1}}]},)"
              R"({"name":"L","points":[{"name":"Q","point":{"latitude":2}}]}]})",
              "Two different routes have the name \"L\". Give them different names in the file."},
             {R"({"route":[{"name":"E"}],"track":[{"points":[]}]})",
              "The route \"E\" has no points. Give it some in the file, or remove it.\n"
              "magellangps: The track without a name has no points."}}) {
        const support::Receiver receiver;
        const auto planned = send(receiver.path(), {"--data", data(json), "--dry-run"});
        EXPECT_EQ(planned.status, 1) << json;
        EXPECT_THAT(planned.err, HasSubstr(warning)) << json;
        const auto ran = send(receiver.path(), {"--data", data(json)});
        EXPECT_EQ(ran.status, 1) << json;
        EXPECT_THAT(ran.err, HasSubstr(warning)) << json;
    }
}

TEST_F(Send, UnknownKeyOfDataIsANote)
{
    const support::Receiver receiver;
    const auto ran =
        send(receiver.path(),
             {"--data", data(R"({"waypoint":[{"name":"A","coment":"x","point":{}}]})")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.err,
                HasSubstr("note: data.json: waypoint 1 has the key \"coment\", which no driver is "
                          "known to read. Did you mean \"comment\"?\n"));
}

TEST_F(Send, MissingFolderIsReportedAndTheOthersAreWritten)
{
    const Receiver receiver;
    fs::remove_all(receiver.path("Ways"));
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Path: " + receiver.path("Ways/Default Route File.rte")));
    EXPECT_TRUE(fs::exists(receiver.path("Tracks/TKLG000.log")));
    EXPECT_FALSE(fs::exists(receiver.path("Ways")));
}

TEST_F(Send, PresentFileThatCannotBeReadCausesAWarningAndIsInTheBackup)
{
    const Receiver receiver;
    receiver.put("Points/Default POI File.upt", "H\xFCtte");
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("The backup keeps a copy. Path: " +
                                   receiver.path("Points/Default POI File.upt")));
    EXPECT_THAT(ran.out, HasSubstr("written and read back"));
    const auto kept = filesOf(here_.path("kept"));
    EXPECT_EQ(std::count_if(kept.begin(), kept.end(),
                            [](const auto& file) { return file.second == "H\xFCtte"; }),
              1);
    EXPECT_THAT(receiver.read("Points/Default POI File.upt"), HasSubstr(",Summit,"));
}

TEST_F(Send, DamagedPresentFileIsUnchanged)
{
    const Receiver receiver;
    const auto damaged = support::sentences({"PMGNWPL,4630.00000,N"});
    receiver.put("Points/Default POI File.upt", damaged);
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Points/Default POI File.upt"));
    EXPECT_EQ(receiver.read("Points/Default POI File.upt"), damaged);
    EXPECT_TRUE(fs::exists(receiver.path("Ways/Default Route File.rte")));
}

TEST_F(Send, NothingIsSentToAReceiverThatCannotBeReadWhole)
{
    for (const char* const unreadable :
         {"USBTRANS/LANGUAGE.DAT", "Points/Default POI File.upt", "Ways/Default Route File.rte"}) {
        const Receiver receiver;
        fs::remove(receiver.path(unreadable));
        fs::create_symlink("loop", receiver.path("loop"));
        fs::create_symlink(receiver.path("loop"), receiver.path(unreadable));
        for (const auto& words :
             {std::vector<std::string>{"--no-backup"}, {"--backup", here_.path("kept")}}) {
            std::vector<std::string> command{"send", trip(), "--device", receiver.path()};
            command.insert(command.end(), words.begin(), words.end());
            const auto ran = magellangps(command);
            EXPECT_EQ(ran.status, 1) << unreadable;
            EXPECT_THAT(ran.err, HasSubstr(receiver.path(unreadable)));
            EXPECT_THAT(ran.err, HasSubstr("Nothing was sent."));
            EXPECT_FALSE(fs::exists(receiver.path("Tracks/TKLG000.log")));
        }
        const auto dry = send(receiver.path(), {trip(), "--dry-run"});
        EXPECT_EQ(dry.status, 1) << unreadable;
        EXPECT_THAT(dry.err, HasSubstr(receiver.path(unreadable)));
    }
}

TEST_F(Send, LinesThatWillNotBeKeptAreCounted)
{
    const Receiver receiver;
    receiver.put("Points/Default POI File.upt",
                 support::sentences({support::kCamp}) + "$damaged\r\n");
    const auto ran = send(receiver.path(), {trip()});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\n1 line of Default POI File.upt will not be kept"));
}

TEST_F(Send, FailedBackupStopsTheSend)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    const auto ran = magellangps(
        {"send", trip(), "--device", receiver.path(), "--backup", here_.put("file", "")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("--no-backup"));
    EXPECT_EQ(filesOf(receiver.path()), before);
    EXPECT_EQ(magellangps({"send", trip(), "--device", receiver.path(), "--no-backup"}).status, 0);
}

TEST_F(Send, BackupIsWrittenToTheStateFolderBySerialNumber)
{
    const Receiver receiver;
    const support::How how{.environment = {"XDG_STATE_HOME=" + here_.path("state")}};
    EXPECT_EQ(magellangps({"send", trip(), "--device", receiver.path()}, how).status, 0);
    EXPECT_TRUE(fs::is_directory(here_.path("state/magellangps/backups/42")));
    EXPECT_THAT(magellangps({"restore", "--device", receiver.path()}, how).out,
                testing::StartsWith("Backup "));
}

TEST_F(Send, RestorePutsBackThePreviousFiles)
{
    const Receiver receiver;
    receiver.put("Points/Default POI File.upt", "H\xFCtte");
    const auto before = filesOf(receiver.path());
    send(receiver.path(), {trip()});
    const auto name = fs::directory_iterator
    {
        here_.path("kept/42")
        } -> path().filename().string();
    const auto restore = [&](std::vector<std::string> words) {
        words.insert(words.begin(),
                     {"restore", "--device", receiver.path(), "--backup", here_.path("kept")});
        return magellangps(words);
    };
    EXPECT_THAT(restore({}).out, HasSubstr('\n' + name + "      5 "));
    const auto ran = restore({name});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("restored: Points/Default POI File.upt\n"));
    EXPECT_THAT(ran.out, HasSubstr("not in the backup, left as it is: Tracks/TKLG000.log\n"));
    for (const auto& [file, content] : before)
        EXPECT_EQ(receiver.read(file), content) << file;
    EXPECT_EQ(std::distance(fs::directory_iterator{here_.path("kept/42")}, {}), 2);
    EXPECT_THAT(restore({name}).out,
                testing::StartsWith(
                    "The device already holds what the backup holds.\nnot in the backup, "));
    EXPECT_EQ(std::distance(fs::directory_iterator{here_.path("kept/42")}, {}), 2)
        << "no backup of what is left as it is";

    const auto unknown = restore({"20000101T000000Z"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, HasSubstr("magellangps restore"));
}

TEST_F(Send, EqualBackupIsNotMadeTwiceAndDeletedOnesAreNamed)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    const auto names = [&] {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator{here_.path("kept/42")})
            all.push_back(entry.path().filename().string());
        return all;
    };
    ASSERT_EQ(send(receiver.path(), {trip()}).status, 0);
    ASSERT_EQ(names().size(), 1U);
    const auto first = names().front();
    for (const auto& [file, content] : filesOf(receiver.path())) {
        if (!before.contains(file))
            fs::remove(receiver.path(file));
    }
    EXPECT_THAT(send(receiver.path(), {trip()}).err,
                HasSubstr("in the backup " + here_.path("kept/42/" + first)));
    EXPECT_EQ(names().size(), 1U);
    EXPECT_THAT(send(receiver.path(), {trip(), "--again", "--keep-backups", "1"}).err,
                Not(HasSubstr("deleted")));
    auto second = names();
    std::erase(second, first);
    ASSERT_THAT(second, testing::SizeIs(1));
    EXPECT_THAT(send(receiver.path(), {trip(), "--again", "--keep-backups", "1"}).err,
                HasSubstr("An older backup was deleted, because enough newer ones are kept: " +
                          second.front()));
    EXPECT_THAT(names(), testing::AllOf(testing::SizeIs(2), testing::Contains(first)));
}

TEST_F(Send, BackupAfterAnInterruptedWriteIsRestored)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    receiver.put("Points/.~write.tmp", "half a fi");
    receiver.put("Tracks/.~write.tmp", "");
    ASSERT_EQ(send(receiver.path(), {trip()}).status, 0);
    receiver.put("Points/a.upt", "lost");
    const auto name = fs::directory_iterator
    {
        here_.path("kept/42")
        } -> path().filename().string();
    const auto ran =
        magellangps({"restore", "--device", receiver.path(), "--backup", here_.path("kept"), name});
    EXPECT_EQ(ran.status, 0) << ran.err;
    for (const auto& [file, content] : before)
        EXPECT_EQ(receiver.read(file), content) << file;
}

TEST_F(Send, RestoreRejectsAManifestWithAZeroByteInAFolder)
{
    const Receiver receiver;
    const auto before = filesOf(receiver.path());
    here_.put("forged/manifest.json", R"({"device":"/d","folders":["..\u0000"],"files":[]})");
    const auto ran = magellangps({"restore", "--device", receiver.path(), "--backup",
                                  here_.path("kept"), here_.path("forged")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_THAT(ran.err, HasSubstr("This folder is not a complete backup"));
    EXPECT_EQ(filesOf(receiver.path()), before);
}

TEST_F(Send, FullMediumKeepsTheOldFilesAndIsReported)
{
    const Receiver original;
    const support::PrivateMount medium{here_.makeFolder("device"), "size=128k"};
    if (!medium.isMounted())
        GTEST_SKIP() << "no right to mount";
    fs::copy(original.path(), here_.path("device"), fs::copy_options::recursive);
    here_.put("device/fill", std::string(1 << 20, 'x')); // fills the volume
    const auto before = filesOf(here_.path("device"));
    const auto ran = send(here_.path("device"), {trip()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Path: " + here_.path("device/Points/Default POI File.upt")));
    EXPECT_EQ(filesOf(here_.path("device")), before);
}

TEST_F(Send, ReadOnlyMediumIsReported)
{
    const Receiver original;
    const support::PrivateMount medium{here_.makeFolder("device"), "size=128k"};
    if (!medium.isMounted())
        GTEST_SKIP() << "no right to mount";
    fs::copy(original.path(), here_.path("device"), fs::copy_options::recursive);
    ASSERT_EQ(
        ::mount("tmpfs", here_.path("device").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr),
        0);
    const auto before = filesOf(here_.path("device"));
    const auto ran = send(here_.path("device"), {trip()});
    EXPECT_EQ(ran.status, 1);
    const auto message = "magellangps: The device cannot be written, because its volume is "
                         "read-only: nothing can be sent. Mount it so that it can be written, and "
                         "send again. Path: " +
                         here_.path("device") + '\n';
    EXPECT_EQ(ran.err, message);
    const auto dry = send(here_.path("device"), {"--dry-run", trip()});
    EXPECT_EQ(dry.status, 1);
    EXPECT_EQ(dry.err, message);
    EXPECT_EQ(filesOf(here_.path("device")), before);
}

// The lines of a file that begin with a sentence's name, without their checksums.
std::vector<std::string> linesOf(const Receiver& receiver, std::string_view file,
                                 std::string_view sentence)
{
    std::istringstream text{receiver.read(file)};
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with('$' + std::string{sentence}))
            lines.push_back(line.substr(1, line.find('*') - 1));
    }
    return lines;
}

constexpr char kWaypointFile[] = "Points/Default POI File.upt";
constexpr char kCacheFile[] = "Caches/Default Geocache File.gs";
constexpr char kRouteFile[] = "Ways/Default Route File.rte";

// A send to a receiver of which each default file is known.
class SendToDefaultFiles : public Send {
protected:
    SendToDefaultFiles()
    {
        for (const char* const file : {"Points/a.upt", "Caches/a.gs", "Ways/a.rte"})
            std::filesystem::remove(receiver_.path(file));
    }

    Ran sendGpx(const std::string& records, std::vector<std::string> words = {}) const
    {
        words.push_back(here_.put("sent.gpx", "<gpx version=\"1.1\">" + records + "</gpx>"));
        return send(receiver_.path(), words);
    }

    // The second send of the same file.
    void expectNothingIsNew() const
    {
        const auto before = filesOf(receiver_.path());
        const auto again = send(receiver_.path(), {here_.path("sent.gpx")});
        EXPECT_EQ(again.status, 0) << again.err;
        EXPECT_THAT(again.out, HasSubstr("Nothing is new"));
        EXPECT_EQ(filesOf(receiver_.path()), before);
    }

    Receiver receiver_;
};

TEST_F(SendToDefaultFiles, NumberedNameReplacesNoDifferentRecord)
{
    const std::string camp2 = "PMGNWPL,4630.00000,N,00715.00000,E,0000000,M,Camp 2,my own,ab";
    receiver_.put(kWaypointFile, support::sentences({camp2}));
    const std::string a = "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,A,,a";
    const std::string z = "PMGNWPL,4700.00000,N,00700.00000,E,0000000,M,Z,,a";
    receiver_.put(kRouteFile, support::sentences({a, z, "PMGNRTE,1,1,c,1,Tour 2,A,a,Z,a"}));
    const auto sent =
        sendGpx("<wpt lat='46' lon='7'><name>Camp</name></wpt>"
                "<wpt lat='46.5' lon='7.25'><name>Camp</name></wpt>"
                "<rte><name>Tour</name><rtept lat='45' lon='7'><name>B</name></rtept></rte>"
                "<rte><name>Tour</name><rtept lat='46' lon='7'><name>A</name></rtept>"
                "<rtept lat='45' lon='7'><name>B</name></rtept></rte>");
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, HasSubstr("waypoint name: \"Camp\" becomes \"Camp 3\"\n"));
    EXPECT_THAT(sent.out, HasSubstr("route name: \"Tour\" becomes \"Tour 3\"\n"));
    EXPECT_THAT(sent.out, Not(HasSubstr("Replaced")));
    EXPECT_THAT(linesOf(receiver_, kWaypointFile, "PMGNWPL"), testing::Contains(camp2));
    EXPECT_THAT(linesOf(receiver_, kRouteFile, "PMGNRTE"),
                testing::UnorderedElementsAre("PMGNRTE,1,1,c,1,Tour 2,A,a,Z,a",
                                              "PMGNRTE,1,1,c,2,Tour,B,a",
                                              "PMGNRTE,1,1,c,3,Tour 3,A,a,B,a"));
    expectNothingIsNew();
}

TEST_F(SendToDefaultFiles, RecordsOfOneNameThatDifferAreAllOnTheDevice)
{
    const auto sent =
        sendGpx("<wpt lat='46' lon='7'><name>Camp</name></wpt>"
                "<wpt lat='46' lon='7'><name>Camp</name><cmt>by the lake</cmt></wpt>"
                "<wpt lat='46' lon='7'><name>Camp</name></wpt>"
                "<wpt lat='46' lon='7'><name>Camp</name><sym>Geocache</sym></wpt>"
                "<wpt lat='46' lon='7'><ele>5</ele><name>Camp</name><sym>Geocache</sym></wpt>"
                "<rte><name>R</name><rtept lat='46' lon='7'><name>Camp</name></rtept></rte>"
                "<rte><name>R</name><cmt>short</cmt><rtept lat='46' "
                "lon='7'><name>Camp</name></rtept></rte>");
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, HasSubstr("In the files more than once, and sent once: 1 waypoint.\n"));
    EXPECT_THAT(sent.out, HasSubstr("sent: 2 waypoints, 2 geocaches, 2 routes;"));
    EXPECT_THAT(linesOf(receiver_, kWaypointFile, "PMGNWPL"), testing::SizeIs(2));
    EXPECT_THAT(linesOf(receiver_, kCacheFile, "PMGNGEO"), testing::SizeIs(2));
    EXPECT_THAT(linesOf(receiver_, kRouteFile, "PMGNWPL"), testing::SizeIs(1));
    expectNothingIsNew();
}

TEST_F(SendToDefaultFiles, TrackThatIsGivenTwiceIsSentOnce)
{
    const std::string track =
        "<trk><name>Day</name><trkseg><trkpt lat='46' lon='7'><time>2024-06-01T10:00:00Z</time>"
        "</trkpt><trkpt lat='46.1' "
        "lon='7'><time>2024-06-01T10:01:00Z</time></trkpt></trkseg></trk>";
    const auto sent = sendGpx(track + track);
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, HasSubstr("In the files more than once, and sent once: 1 track"));
    EXPECT_THAT(sent.out, HasSubstr("sent: 1 track"));
}

TEST_F(SendToDefaultFiles, PointThatNoRouteUsesIsKept)
{
    const std::string stop = "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,Stop,old,a";
    const std::string longName =
        "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,12345678901234567890,,a";
    receiver_.put(kRouteFile, support::sentences({stop, longName}));
    const auto sent = sendGpx("<rte><name>R</name>"
                              "<rtept lat='47' lon='7'><name>Stop</name></rtept>"
                              "<rtept lat='47' lon='7'><name>12345678901234567890</name></rtept>"
                              "</rte>");
    EXPECT_EQ(sent.status, 0) << sent.err;
    const auto lines = linesOf(receiver_, kRouteFile, "PMGNWPL");
    EXPECT_THAT(lines, testing::Contains(stop));
    EXPECT_THAT(lines, testing::Contains(longName));
    EXPECT_THAT(linesOf(receiver_, kRouteFile, "PMGNRTE"),
                testing::ElementsAre("PMGNRTE,1,1,c,1,R,Stop 2,a,123456789012345678 2,a"));
    expectNothingIsNew();
}

TEST_F(SendToDefaultFiles, PointOfARouteThatMovedIsSentOnce)
{
    const auto route = [](const char* latitude) {
        return std::string{"<rte><name>R</name><rtept lat='"} + latitude +
               "' lon='7'><name>Stop</name></rtept></rte>";
    };
    EXPECT_EQ(sendGpx(route("46")).status, 0);
    const auto moved = sendGpx(route("47"));
    EXPECT_EQ(moved.status, 0) << moved.err;
    EXPECT_THAT(moved.out,
                HasSubstr("Replaced on the device by what has the same name: route \"R\".\n"));
    EXPECT_THAT(linesOf(receiver_, kRouteFile, "PMGNRTE"),
                testing::ElementsAre("PMGNRTE,1,1,c,1,R,Stop 2,a"));
    expectNothingIsNew();
}

TEST_F(SendToDefaultFiles, RecordsThatAreReplacedAreNamedInThePlanAndInTheDocument)
{
    receiver_.put(kWaypointFile,
                  support::sentences({"PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,Camp,,a",
                                      "PMGNWPL,4600.00000,N,00700.00000,E,0000000,M,Hut,,a"}));
    const std::string records = "<wpt lat='47' lon='7'><name>Camp</name></wpt>"
                                "<wpt lat='46' lon='7'><name>Hut</name></wpt>"
                                "<wpt lat='46' lon='7'><name>New</name></wpt>";
    const std::string line =
        "Replaced on the device by what has the same name: waypoint \"Camp\".\n";
    EXPECT_THAT(sendGpx(records, {"--dry-run"}).out, HasSubstr(line));
    const auto planned = ordered_json::parse(sendGpx(records, {"--dry-run", "--json"}).out);
    EXPECT_EQ(planned["replaced"], ordered_json::parse(R"([{"kind":"waypoint","name":"Camp"}])"));
    const auto sent = sendGpx(records);
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, HasSubstr(line));
    expectNothingIsNew();
}

} // namespace
