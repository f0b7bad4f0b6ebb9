// SPDX-License-Identifier: MIT
// The built program: help, mistakes, completions, and what it prints about the plug-in and devices.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

using support::magellangps;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(CommandLine, EveryCommandHasItsHelp)
{
    for (const auto& words : std::vector<std::vector<std::string>>{{"--help"},
                                                                   {"info", "--help"},
                                                                   {"devices", "--help"},
                                                                   {"acquire", "--help"},
                                                                   {"import", "--help"},
                                                                   {"send", "--help"},
                                                                   {"restore", "--help"},
                                                                   {"watch", "--help"}}) {
        const auto ran = magellangps(words);
        EXPECT_EQ(ran.status, 0);
        EXPECT_THAT(ran.out, HasSubstr("usage: magellangps"));
        EXPECT_THAT(ran.err, IsEmpty());
    }
}

TEST(CommandLine, MistakeIsOneLineAndStatus2)
{
    for (const auto& words :
         std::vector<std::vector<std::string>>{{"aquire"},
                                               {"acquire", "--no-such"},
                                               {"acquire", "-o", "a.xyz"},
                                               {"import"},
                                               {"acquire", "--options", "[1]"},
                                               {"send"},
                                               {"send", "a.gpx", "--data", "d.json"}}) {
        const auto ran = magellangps(words);
        EXPECT_EQ(ran.status, 2);
        EXPECT_THAT(ran.out, IsEmpty());
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
}

TEST(CommandLine, NoCommandShowsTheHelpAsAMistake)
{
    const auto ran = magellangps({});
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_THAT(ran.err, HasSubstr("usage: magellangps"));
}

TEST(CommandLine, CompletesDriversDevicesAndSentenceFiles)
{
    const support::Receiver receiver;
    EXPECT_THAT(magellangps({"__complete", "--", "acquire", "--driver", "mag"}).out,
                HasSubstr("magellan\tMagellan\n"));
    EXPECT_THAT(magellangps({"__complete", "--", "--test-folder", receiver.path(), "acquire",
                             "--device", ""})
                    .out,
                HasSubstr(receiver.path() + "\tMagellan device 42\n"));
    EXPECT_EQ(magellangps({"__complete", "--", "import", ""}).out,
              ":files log rte upt gs gpx kml kmz\n");
}

TEST(CommandLine, CompletesTheBackupsOfTheDevice)
{
    const support::Receiver receiver;
    const support::TemporaryFolder backups;
    EXPECT_EQ(magellangps({"send", "--data",
                           backups.put("d.json", "{\"waypoint\":[{\"name\":\"A\","
                                                 "\"point\":{\"latitude\":1}}]}"),
                           "--device", receiver.path(), "--backup", backups.path()})
                  .status,
              0);
    const auto ran = magellangps({"__complete", "--", "restore", "--device", receiver.path(),
                                  "--backup", backups.path(), "2"});
    EXPECT_THAT(ran.out, testing::MatchesRegex("2[0-9]+T[0-9]+Z\t[0-9]+ files\n:folders\n"));
    EXPECT_THAT(ran.err, IsEmpty());
}

TEST(CommandLine, CompletionIsSilentAboutAMissingPlugIn)
{
    const auto ran = magellangps({"__complete", "--plugin", "/nowhere", "acquire", "--device", ""});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, ":folders\n");
    EXPECT_THAT(ran.err, IsEmpty());
}

TEST(CommandLine, InfoDocumentHasItsKeysInOrder)
{
    const auto ran = magellangps({"info", "--json"});
    EXPECT_EQ(ran.status, 0);
    const auto document = nlohmann::ordered_json::parse(ran.out);
    EXPECT_THAT(
        ran.out,
        testing::StartsWith(
            R"({"name":"Magellan GPS PlugIns","class":"GPSPlugIn","apiVersion":1,"info":{"Copyright":"© 2026 Orvane",)"));
    EXPECT_EQ(document["info"].size(), 6U);
    EXPECT_EQ(
        document["drivers"][0].dump(),
        R"({"class":"MagellanGPSPlugin","name":"Magellan",)"
        R"("capabilities":"tracks,waypoints,routes,geocaches,sendtrk,sendwpt,sendrte,sendcache",)"
        R"("fileTypes":["log","rte","upt","gs"],"ready":false,"needsSerialRefresh":false,"needsFileSystemRefresh":true,)"
        R"("needsUSBRefresh":false,"isPVTOffered":false})");
}

TEST(CommandLine, InfoIsReadable)
{
    const auto ran = magellangps({"info"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.out, HasSubstr("Version: 1.5\n"));
    EXPECT_THAT(ran.out, HasSubstr("Imports: log, rte, upt, gs\n"));
}

TEST(CommandLine, DevicesDocumentHasTheViewAndTheDevices)
{
    const support::Receiver one;
    const support::Receiver two;
    two.put("USBTRANS/UNIT_ID.DAT", "\xFF");
    const auto ran = magellangps(
        {"devices", "--json", "--test-folder", one.path(), "--test-folder", two.path()});
    EXPECT_EQ(ran.status, 0);
    const auto document = nlohmann::ordered_json::parse(ran.out);
    EXPECT_EQ(
        document["drivers"][0].dump(),
        R"({"class":"MagellanGPSPlugin","name":"Magellan","ready":true,"view":{"deviceListMenu":{"hidden":false,)"
        R"("items":["Magellan device 42","Unauthorized Magellan device"],"selected":0},"deviceButton":{"hidden":true}},)"
        R"("devices":[{"location":")" +
            one.path() +
            R"(","name":"Magellan device 42","authorized":true,"selected":true,"model":null,"firmware":null},{"location":")" +
            two.path() +
            R"(","name":"Unauthorized Magellan device","authorized":true,"selected":false,"model":null,"firmware":null}]})");
}

TEST(CommandLine, DevicesDocumentWithoutADeviceHasNoSelection)
{
    const support::TemporaryFolder empty;
    const auto ran = magellangps({"--test-folder", empty.path(), "--json", "devices"});
    const auto document = nlohmann::ordered_json::parse(ran.out);
    EXPECT_EQ(
        document["drivers"][0].dump(),
        R"({"class":"MagellanGPSPlugin","name":"Magellan","ready":false,"view":{"deviceListMenu":{"hidden":true,"items":[],)"
        R"("selected":null},"deviceButton":{"hidden":true}},"devices":[]})");
}

TEST(CommandLine, StoredTestFoldersAreSeenAndReplacedForARun)
{
    const support::Receiver stored;
    const support::Receiver given;
    const support::TemporaryFolder settings;
    settings.put("com.Orvane.GPSPlugin/defaults.plist",
                 "<plist version=\"1.0\"><dict><key>MagellanTestFileList</key><array><string>" +
                     stored.path() + "</string></array></dict></plist>");
    const support::How how{.environment = {"XDG_CONFIG_HOME=" + settings.path()}};
    EXPECT_THAT(magellangps({"devices"}, how).out, HasSubstr(stored.path()));
    const auto replaced = magellangps({"devices", "--test-folder", given.path()}, how).out;
    EXPECT_THAT(replaced, HasSubstr(given.path()));
    EXPECT_THAT(replaced, testing::Not(HasSubstr(stored.path())));
}

TEST(CommandLine, OutputDoesNotGoIntoAFileIfStdoutIsClosed)
{
    for (const char* const format : {"gpx", "kml", "geojson", "html", "csv", "jsonl"}) {
        const auto ran =
            support::run({"/bin/sh", "-c", R"(exec "$0" import "$1" -o - --format "$2" >&-)",
                          MAGELLAN_BIN_DIR "/magellangps",
                          MAGELLAN_SOURCE_DIR "/samples/files/trip.log", format});
        EXPECT_EQ(ran.status, 1) << format;
        EXPECT_THAT(ran.err, HasSubstr("The output cannot be written: Bad file descriptor."))
            << format;
    }
    EXPECT_EQ(support::run({"/bin/sh", "-c", R"(exec "$0" info <&- >&- 2>&-)",
                            MAGELLAN_BIN_DIR "/magellangps"})
                  .status,
              1);
}

} // namespace
