// SPDX-License-Identifier: MIT
// Command lines as typed: the options that they give, and the message for each mistake.

#include "host/cli/CommandLine.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using host::AcquireOptions;
using host::DevicesOptions;
using host::ExitStatus;
using host::ImportOptions;
using host::InfoOptions;
using host::RestoreOptions;
using host::SendOptions;
using host::WatchOptions;
using testing::ElementsAre;
using testing::HasSubstr;

host::ParsedCommandLine parse(std::vector<const char*> words)
{
    words.insert(words.begin(), "magellangps");
    return host::parseCommandLine(static_cast<int>(words.size()), words.data());
}

// The options of a command line that must be one of this command.
template <typename Options> Options optionsOf(const std::vector<const char*>& words)
{
    const auto parsed = parse(words);
    const auto* const options = parsed.options ? std::get_if<Options>(&*parsed.options) : nullptr;
    EXPECT_NE(options, nullptr) << parsed.text;
    return options != nullptr ? *options : Options{};
}

TEST(CommandLine, GlobalOptionsCanPrecedeOrFollowTheCommand)
{
    for (const auto& options :
         {optionsOf<InfoOptions>({"--debug", "2", "--plugin", "P", "--test-folder", "A",
                                  "--test-folder", "B", "--json", "info"}),
          optionsOf<InfoOptions>({"info", "--debug", "2", "--plugin", "P", "--test-folder", "A",
                                  "--json", "--test-folder", "B"})}) {
        EXPECT_EQ(options.debug, 2);
        EXPECT_EQ(options.plugin, "P");
        EXPECT_TRUE(options.json);
        EXPECT_THAT(options.testFolders, ElementsAre("A", "B"));
    }
}

TEST(CommandLine, TestFolderAcceptsOneValue)
{
    EXPECT_TRUE(optionsOf<DevicesOptions>({"--test-folder", "A", "devices", "--watch"}).watch);
    const auto options = optionsOf<ImportOptions>({"import", "--test-folder", "A", "a.log"});
    EXPECT_THAT(options.testFolders, ElementsAre("A"));
    EXPECT_THAT(options.files, ElementsAre("a.log"));
}

TEST(CommandLine, ChoiceOfRecords)
{
    const auto options = optionsOf<AcquireOptions>(
        {"acquire", "--track", "Day 1", "--since", "2026-08-30T10:15Z", "--track", "N*",
         "--until=2026-08-30T10:15Z", "--no-geocaches", "--new-only", "--split-gap", "10min"});
    EXPECT_THAT(options.choice.trackNames, ElementsAre("Day 1", "N*"));
    EXPECT_EQ(options.choice.times->first, 1788084900);
    EXPECT_EQ(options.choice.times->last, 1788084959);
    EXPECT_FALSE(options.choice.geocaches);
    EXPECT_TRUE(options.newOnly);
    EXPECT_EQ(options.splitGap.seconds, 600);
    const auto import = optionsOf<ImportOptions>({"import", "--track", "A", "a.log", "--list"});
    EXPECT_THAT(import.choice.trackNames, ElementsAre("A"));
    EXPECT_THAT(import.files, ElementsAre("a.log"));
    EXPECT_TRUE(import.list);
    EXPECT_EQ(optionsOf<WatchOptions>({"watch", "--split-gap", "off"}).splitGap.isOff, true);
}

TEST(CommandLine, TilesOfAPage)
{
    const std::string url = "https://a.org/{z}/{x}/{y}.png";
    const auto options = optionsOf<AcquireOptions>(
        {"acquire", "-o", "a.html", "--tiles", url.c_str(), "--tiles-attribution", "Me"});
    EXPECT_EQ(options.tiles, url);
    EXPECT_EQ(options.tilesAttribution, "Me");
    EXPECT_EQ(optionsOf<host::OpenOptions>({"open", "--tiles", url.c_str()}).tiles, url);
    EXPECT_EQ(parse({"acquire", "-o", "a.html", "--tiles", "https://a.org/{z}/{x}"}).text,
              "magellangps: --tiles: \"https://a.org/{z}/{x}\" has no {y}; the URL of tiles is one "
              "such as \"https://tile.example.org/{z}/{x}/{y}.png\"\n");
}

TEST(CommandLine, TheSummaryCanBeInUtc)
{
    EXPECT_FALSE(optionsOf<AcquireOptions>({"acquire"}).utc);
    EXPECT_TRUE(optionsOf<AcquireOptions>({"acquire", "--utc"}).utc);
    EXPECT_TRUE(optionsOf<ImportOptions>({"import", "a.log", "--list", "--utc"}).utc);
}

TEST(CommandLine, MistakesInAChoiceOfRecords)
{
    EXPECT_EQ(parse({"acquire", "--since", "yesterday"}).text,
              "magellangps: --since: \"yesterday\" is not a date such as 2026-08-30, or a time "
              "such as 2026-08-30T10:15\n");
    EXPECT_EQ(parse({"import", "a.log", "--split-gap", "10"}).text,
              "magellangps: --split-gap: \"10\" is not off, a time such as 30s, 10min or 2h, or a "
              "distance such as 500m or 2km\n");
    for (const auto& words :
         std::vector<std::vector<const char*>>{{"acquire", "--list", "-o", "a.gpx"},
                                               {"acquire", "--list", "--events"},
                                               {"acquire", "--track", "A", "--no-tracks"},
                                               {"acquire", "--list", "--summary"},
                                               {"acquire", "--card", "D", "--new-only"}})
        EXPECT_THAT(parse(words).text, HasSubstr("cannot be used together")) << words[1];
    EXPECT_THAT(parse({"import", "a.log", "--new-only"}).text, HasSubstr("--new-only"));
    EXPECT_THAT(parse({"acquire", "--list", "--format", "gpx"}).text, HasSubstr("-o"));
}

TEST(CommandLine, ImportTakesFiles)
{
    const auto options = optionsOf<ImportOptions>({"import", "a.log", "-o", "x.gpx", "info", "-q"});
    EXPECT_THAT(options.files, ElementsAre("a.log", "info"));
    EXPECT_TRUE(options.quiet);
}

TEST(CommandLine, FormatIsTheExtensionsUnlessItIsNamed)
{
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "-o", "a.gpx"}).format->name, "gpx");
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "--output", "a.JSONL"}).format->name, "jsonl");
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "-o", "a.txt", "--format", "gpx"}).format->name,
              "gpx");
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "-o", "-", "--format", "jsonl"}).output, "-");
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "-o", "a.txt", "--format", "GPX"}).format->name,
              "gpx");
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire"}).format, nullptr);
}

TEST(CommandLine, DatesAreCorrectedOnlyOnRequest)
{
    EXPECT_FALSE(optionsOf<AcquireOptions>({"acquire"}).fixDates.isAuto);
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire"}).fixDates.weeks, 0);
    EXPECT_TRUE(optionsOf<AcquireOptions>({"acquire", "--fix-dates", "auto"}).fixDates.isAuto);
    EXPECT_EQ(optionsOf<ImportOptions>({"import", "a.log", "--fix-dates", "1024"}).fixDates.weeks,
              1024);
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "--fix-dates", "-1024"}).fixDates.weeks, -1024);
    EXPECT_EQ(optionsOf<AcquireOptions>({"acquire", "--fix-dates=-5218"}).fixDates.weeks, -5218);
}

TEST(CommandLine, SwitchesTurnKindsOff)
{
    const auto all = optionsOf<AcquireOptions>({"acquire"});
    EXPECT_TRUE(all.waypoints && all.routes && all.tracks);
    const auto some = optionsOf<AcquireOptions>({"acquire", "--no-waypoints", "--no-tracks"});
    EXPECT_FALSE(some.waypoints);
    EXPECT_TRUE(some.routes);
    EXPECT_FALSE(some.tracks);
    EXPECT_FALSE(optionsOf<ImportOptions>({"import", "a.log", "--no-routes"}).routes);
}

TEST(CommandLine, DriverOptionsAreAJsonObject)
{
    EXPECT_EQ(
        optionsOf<AcquireOptions>({"acquire", "--options", R"({"tracks":false})"}).driverOptions,
        (gps::Dictionary{{"tracks", false}}));
    EXPECT_FALSE(optionsOf<AcquireOptions>({"acquire"}).driverOptions);
}

TEST(CommandLine, SendTakesFilesOrADataFile)
{
    const auto files = optionsOf<SendOptions>(
        {"send", "a.gpx", "b.gpx", "--device", "D", "--dry-run", "--exact-names", "--backup", "K"});
    EXPECT_THAT(files.files, ElementsAre("a.gpx", "b.gpx"));
    EXPECT_EQ(files.device, "D");
    EXPECT_EQ(files.backupFolder, "K");
    EXPECT_TRUE(files.dryRun);
    EXPECT_TRUE(files.exactNames);
    EXPECT_FALSE(files.again);
    EXPECT_FALSE(files.joinSegments);
    const auto again = optionsOf<SendOptions>({"send", "a.gpx", "--again", "--join-segments"});
    EXPECT_TRUE(again.again);
    EXPECT_TRUE(again.joinSegments);
    EXPECT_TRUE(files.backup);
    const auto data =
        optionsOf<SendOptions>({"send", "--data", "d.json", "--no-backup", "--events"});
    EXPECT_EQ(data.data, "d.json");
    EXPECT_FALSE(data.backup);
    EXPECT_FALSE(data.dryRun);
}

TEST(CommandLine, TenBackupsAreKeptByDefault)
{
    EXPECT_EQ(optionsOf<SendOptions>({"send", "a.gpx"}).mostBackups, 10U);
    EXPECT_EQ(optionsOf<SendOptions>({"send", "a.gpx", "--keep-backups", "1"}).mostBackups, 1U);
    EXPECT_EQ(optionsOf<RestoreOptions>({"restore", "--keep-backups", "99"}).mostBackups, 99U);
}

TEST(CommandLine, RestoreTakesABackupOrLists)
{
    EXPECT_EQ(optionsOf<RestoreOptions>({"restore"}).backup, std::nullopt);
    const auto options = optionsOf<RestoreOptions>(
        {"restore", "--backup", "K", "20260830T101500Z", "--device", "D"});
    EXPECT_EQ(options.backup, "20260830T101500Z");
    EXPECT_EQ(options.backupFolder, "K");
    EXPECT_EQ(options.device, "D");
}

TEST(CommandLine, WatchWritesGpxIntoTheCurrentFolderByDefault)
{
    const auto plain = optionsOf<WatchOptions>({"watch"});
    EXPECT_EQ(plain.into, ".");
    EXPECT_EQ(plain.format->name, "gpx");
    EXPECT_FALSE(plain.newOnly);
    EXPECT_FALSE(plain.serial);
    const auto given = optionsOf<WatchOptions>(
        {"watch", "--into", "D", "--format", "jsonl", "--new-only", "--serial"});
    EXPECT_EQ(given.into, "D");
    EXPECT_EQ(given.format->name, "jsonl");
    EXPECT_TRUE(given.newOnly);
    EXPECT_TRUE(given.serial);
    EXPECT_EQ(optionsOf<WatchOptions>({"watch", "--driver", "magellan-serial"}).driver,
              "magellan-serial");
}

TEST(CommandLine, DevicesAreExplainedOnRequest)
{
    EXPECT_FALSE(optionsOf<DevicesOptions>({"devices"}).explain);
    EXPECT_TRUE(optionsOf<DevicesOptions>({"devices", "--explain"}).explain);
}

TEST(CommandLine, HelpAndVersionAreAnswers)
{
    for (const auto& words : std::vector<std::vector<const char*>>{{"--help"},
                                                                   {"-h"},
                                                                   {"info", "--help"},
                                                                   {"devices", "--help"},
                                                                   {"acquire", "--help"},
                                                                   {"import", "--help"},
                                                                   {"send", "--help"},
                                                                   {"restore", "--help"},
                                                                   {"watch", "--help"},
                                                                   {"help"},
                                                                   {"help", "help"},
                                                                   {"help", "acquire"}}) {
        const auto parsed = parse(words);
        EXPECT_EQ(parsed.status, ExitStatus::kSuccess);
        EXPECT_THAT(parsed.text, HasSubstr("usage: magellangps"));
        EXPECT_THAT(parsed.text, HasSubstr("Examples:"));
    }
    for (const auto* const option : {"--version", "-V"})
        EXPECT_THAT(parse({option}).text, testing::MatchesRegex("magellangps [0-9.]+\n"));
}

TEST(CommandLine, HelpOfACommandIsThatOfItsOption)
{
    EXPECT_EQ(parse({"help"}).text, parse({"--help"}).text);
    EXPECT_EQ(parse({"help", "send"}).text, parse({"send", "--help"}).text);
}

TEST(CommandLine, QuietAndVerboseHaveLongNames)
{
    EXPECT_TRUE(optionsOf<AcquireOptions>({"acquire", "--quiet"}).quiet);
    EXPECT_TRUE(optionsOf<AcquireOptions>({"--verbose", "acquire"}).verbose);
}

TEST(CommandLine, WordAfterTwoHyphensIsAnArgument)
{
    EXPECT_THAT(optionsOf<ImportOptions>({"import", "--", "--odd="}).files, ElementsAre("--odd="));
}

TEST(CommandLine, EmptyCommandLineIsAMistakeThatShowsTheHelp)
{
    const auto parsed = parse({});
    EXPECT_EQ(parsed.status, ExitStatus::kUsage);
    EXPECT_THAT(parsed.text, HasSubstr("usage: magellangps"));
}

TEST(CommandLine, MistakesAreOneLineEach)
{
    struct Row {
        std::vector<const char*> words;
        const char* says;
    };
    const std::vector<Row> rows{
        {{"aquire"}, "did you mean \"acquire\"?"},
        {{"nonsense"},
         "unknown command \"nonsense\"; the commands are: info, devices, acquire, import, "
         "open, send, restore, watch, help"},
        {{"info", "--jsn"}, "did you mean \"--json\"?"},
        {{"acquire", "--outptu=x.gpx"}, "did you mean \"--output\"?"},
        {{"info", "extra"}, "unexpected argument \"extra\""},
        {{"info", "--watch"}, "--watch is an option of devices, not of info"},
        {{"--watch", "devices"}, "follows it: \"magellangps devices --watch\""},
        {{"help", "aquire"}, "unknown command \"aquire\"; did you mean \"acquire\"?"},
        {{"help", "download"}, "unknown command \"download\"; did you mean \"acquire\"?"},
        {{"download"}, "unknown command \"download\"; did you mean \"acquire\"?"},
        {{"convert", "a.log"}, "unknown command \"convert\"; did you mean \"import\"?"},
        {{"upload", "a.gpx"}, "unknown command \"upload\"; did you mean \"send\"?"},
        {{"help", "xyz"}, "unknown command \"xyz\"; the commands are: info, devices"},
        {{"help", "send", "info"}, "unexpected argument \"info\""},
        {{"acquire", "-o", "a.shp"},
         "unknown output format \"shp\"; the formats are: gpx, kml, kmz"},
        {{"acquire", "-o", "a"},
         "the output file \"a\" has no extension: name its format with --format (gpx, kml"},
        {{"acquire", "-o", ".gpx"}, "the output file \".gpx\" has no extension"},
        {{"acquire", "-o", ""}, "the name of the output file is empty"},
        {{"acquire", "-o", "a", "--format", ""},
         "unknown output format \"\"; the formats are: gpx, kml, kmz"},
        {{"acquire", "-o", "-"}, "--format"},
        {{"acquire", "--format", "gpx"}, "-o"},
        {{"acquire", "-o", "-", "--format", "gpx", "--events"}, "need stdout"},
        {{"acquire", "-o", "-", "--format", "gpx", "--summary"}, "need stdout"},
        {{"acquire", "--events", "--summary"}, "need stdout"},
        {{"acquire", "--fix-dates", "5219"},
         "--fix-dates: \"5219\" is not auto, off or a number of weeks from -5218 to 5218"},
        {{"acquire", "--fix-dates", "soon"}, "--fix-dates: \"soon\" is not auto"},
        {{"import", "a.log", "--fix-dates", ""}, "--fix-dates"},
        {{"acquire", "--fix-dates"}, "--fix-dates"},
        {{"send", "a.gpx", "--fix-dates", "auto"},
         "--fix-dates is an option of acquire, import, open and watch, not of send"},
        {{"acquire", "--card", "C", "--device", "D"},
         "--device and --card cannot be used together"},
        {{"acquire", "--card", "C", "--mount"}, "--card and --mount cannot be used together"},
        {{"acquire", "--card", "C", "--eject"}, "--card and --eject cannot be used together"},
        {{"send", "--dry-run", "--eject", "a.gpx"},
         "--dry-run and --eject cannot be used together"},
        {{"restore", "--eject"}, "--eject needs a BACKUP to restore"},
        {{"acquire", "--card", "C", "--no-tracks"},
         "--card and --no-tracks cannot be used together"},
        {{"acquire", "--options", "[]"}, "JSON object"},
        {{"acquire", "--options", "{"}, "JSON object"},
        {{"acquire", "--options", "null"}, "JSON object"},
        {{"acquire", "--options", "{}", "--no-tracks"},
         "--options and --no-tracks cannot be used together"},
        {{"acquire", "--debug", "much"}, "--debug: \"much\" is not a whole number"},
        {{"acquire", "--debug", "2147483648"},
         "--debug: \"2147483648\" is not a whole number from -2147483648 to 2147483647"},
        {{"--debug"}, "--debug needs a value: N"},
        {{"acquire", "--device"}, "--device needs a value: LOCATION"},
        {{"acquire", "-o"}, "--output needs a value: FILE"},
        {{"acquire", "-o", "a.gpx", "-o", "b.gpx"}, "--output is given more than once"},
        {{"--test-folder=", "devices"}, "--test-folder has no value after its \"=\""},
        {{"acquire", "--device=", "-v"}, "--device has no value after its \"=\""},
        {{"-v"}, "no COMMAND is given; see \"magellangps --help\""},
        {{"-q", "-v", "info"}, "--quiet and --verbose cannot be used together"},
        {{"import"}, "no FILE is given; see \"magellangps import --help\""},
        {{"import", "a.log", "--device", "/x"},
         "--device is an option of devices, acquire, open, send and restore, not of import"},
        {{"import", "-"}, "import reads files, not stdin"},
        {{"send", "a.gpx", "-"}, "send reads files, not stdin"},
        {{"send", "--data", "-"}, "send reads files, not stdin"},
        {{"info", "--events"}, "--events is for acquire, import and send, not for info"},
        {{"devices", "--events"}, "not for devices"},
        {{"send"}, "no FILE to send"},
        {{"send", "a.gpx", "--data", "d.json"}, "FILE and --data cannot be used together"},
        {{"send", "--data", "d.json", "--exact-names"}, "cannot be used together"},
        {{"send", "--data", "d.json", "--again"}, "cannot be used together"},
        {{"send", "--data", "d.json", "--join-segments"}, "cannot be used together"},
        {{"send", "a.gpx", "--json", "--events"}, "--json and --events both need stdout"},
        {{"restore", "--json", "--events"}, "not for restore"},
        {{"send", "a.gpx", "--backup", "K", "--no-backup"}, "cannot be used together"},
        {{"send", "a.gpx", "--keep-backups", "0"},
         "--keep-backups: \"0\" is not a whole number from 1 to 2147483647"},
        {{"send", "a.gpx", "--keep-backups", "-1"}, "--keep-backups: \"-1\" is not a whole number"},
        {{"send", "a.gpx", "--dryrun"}, "did you mean \"--dry-run\"?"},
        {{"restore", "a", "b"}, "unexpected argument \"b\""},
        {{"completions", "bash"}, "unknown command \"completions\""},
        {{"acquire", "--keep"}, "unknown option \"--keep\"; see \"magellangps acquire --help\""},
        {{"acquire", "receiver"},
         "unexpected argument \"receiver\"; did you mean \"--output receiver\" or \"--device "
         "receiver\"?"},
        {{"send", "--keep", "3"}, "did you mean \"--keep-backups\"?"},
        {{"info", "--json=false"}, "--json takes no value"},
        {{"devices", "--explian"}, "did you mean \"--explain\"?"},
        {{"wach"}, "did you mean \"watch\"?"},
        {{"watch", "--format", "shp"},
         "unknown output format \"shp\"; the formats are: gpx, kml, kmz"},
        {{"watch", "--events"}, "--events is for acquire, import and send, not for watch"},
        {{"watch", "--json"}, "--json is not for watch"},
        {{"watch", "--serial", "--driver", "magellan"}, "cannot be used together"},
        {{"open", "--json"}, "--json is not for open, which makes a page"},
        {{"open", "--events"}, "--events is for acquire, import and send, not for open"},
        {{"open", "-o", "a.html"}, "-o is an option of acquire and import, not of open"},
        {{"open", "a.log", "--device", "x"}, "--device and FILE cannot be used together"},
        {{"open", "-"}, "open reads files, not stdin"},
        {{"watch", "--newonly"}, "did you mean \"--new-only\"?"},
        {{"watch", "-o", "a.gpx"}, "-o is an option of acquire and import, not of watch"},
        {{"info", "two\nlines\x1b[2J"}, "unexpected argument"},
    };
    for (const auto& [words, says] : rows) {
        const auto parsed = parse(words);
        EXPECT_EQ(parsed.status, ExitStatus::kUsage) << says;
        EXPECT_THAT(parsed.text, testing::StartsWith("magellangps: "));
        EXPECT_THAT(parsed.text, HasSubstr(says));
        EXPECT_EQ(std::count(parsed.text.begin(), parsed.text.end(), '\n'), 1) << parsed.text;
        EXPECT_EQ(parsed.text.find('\x1b'), std::string::npos);
    }
}

} // namespace
