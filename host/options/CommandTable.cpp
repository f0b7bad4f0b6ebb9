// SPDX-License-Identifier: MIT
// A new option goes into its command's add function, into the struct in Options.h, and into the
// manual. Values that need more than copying are converted in a callback, which throws
// CLI::ValidationError("--option", "what is wrong") for the user to read.

#include "host/options/CommandTable.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/commandline/HelpFormatter.h"
#include "host/formats/PageTiles.h"

#include <fmt/format.h>

#include <limits>
#include <memory>

namespace host {
namespace {

constexpr char kExamples[] = R"(Examples:
  magellangps devices                              list what is connected
  magellangps acquire -o trip.gpx                  download everything as GPX
  magellangps acquire --test-folder copy --events  show a download call by call
  magellangps import TKLG001.log -o track.gpx      convert a receiver's file
  magellangps send trip.gpx --dry-run              show what a send would change

"magellangps help COMMAND" lists a command's own options.
)";

constexpr char kGlobalHint[] =
    "The options of \"magellangps --help\" can follow the command, too.\n";

constexpr char kAnyDriver[] = "Use this driver, even if it is not ready";

// Options that are not given leave their variable as it is, so callbacks run only for typed ones.
std::int32_t toNumber(const char* option, const std::string& text, std::int32_t low)
{
    return wholeNumber(option, text, low, std::numeric_limits<std::int32_t>::max());
}

} // namespace

CommandTable::CommandTable()
    : app_("Downloads tracks, waypoints, routes and geocaches from GPS receivers, and sends "
           "GPX files to them.",
           "magellangps")
{
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.set_help_flag("-h,--help", "Print this help");
    app_.set_version_flag("-V,--version", "magellangps " HOST_VERSION, "Print the version");
    // A missing command is not left to CLI11: parseCommandLine() answers it.
    app_.require_subcommand(0, 1);
    app_.footer(kExamples);
    addGlobalOptions();
    addCommand("info", "Show the plug-in and its drivers", Command::kInfo,
               "  magellangps info --json\n");
    addDevices();
    addAcquire();
    addImport();
    addOpen();
    addSend();
    addRestore();
    addWatch();
    addHelp();
}

CLI::App& CommandTable::addCommand(const char* name, const char* description, Command command,
                                   const char* examples)
{
    auto& added = *app_.add_subcommand(name, description);
    added.fallthrough()->footer(fmt::format("{}\nExamples:\n{}", kGlobalHint, examples));
    added.parse_complete_callback([this, command] { raw_.command = command; });
    return added;
}

// A type name is more than help: completion finds an option's values by it.
void CommandTable::addGlobalOptions()
{
    auto& options = raw_.global;
    app_.add_option("--plugin", options.plugin,
                    "Load this plug-in bundle instead of the installed one")
        ->type_name("BUNDLE");
    app_.add_option("--test-folder", options.testFolders,
                    "Treat this folder like a mounted volume; may be repeated")
        ->type_name("DIR")
        // Without this, the words after DIR would be further folders, the files of an import among
        // them.
        ->allow_extra_args(false);
    app_.add_option_function<std::string>(
            "--debug",
            [&options](const std::string& text) {
                options.debug = toNumber("--debug", text, std::numeric_limits<std::int32_t>::min());
            },
            "Set \"debug\" to this number in the driver's options")
        ->type_name("N");
    const auto* const config = app_.add_option("--config", options.config,
                                               "Read defaults of options from this file instead of "
                                               "~/.config/magellangps/config.toml")
                                   ->type_name("FILE");
    exclude(config, app_.add_flag("--no-config", options.noConfig,
                                  "Ignore the file with defaults of options"));
    app_.add_flag(
        "--json", options.json,
        "Print the output of info and devices, or what happened in another command, as one JSON "
        "document");
    app_.add_flag("--events", options.events,
                  "Print each call of the plug-in as one JSON line, then a result line");
    const auto* const quiet = app_.add_flag("-q,--quiet", options.quiet,
                                            "Print nothing but errors on stderr; not with -v");
    exclude(quiet, app_.add_flag("-v,--verbose", options.verbose,
                                 "Print the system log's lines on stderr; not with -q"));
}

CLI::Option* CommandTable::addDriverOption(CLI::App& command, std::optional<std::string>& driver,
                                           const char* description)
{
    return command.add_option("--driver", driver, description)->type_name("NAME");
}

// For the commands that work on files: a serial port has none.
void CommandTable::addDiskDeviceOptions(CLI::App& command, std::optional<std::string>& driver,
                                        std::optional<std::string>& device)
{
    addDriverOption(command, driver, kAnyDriver);
    command
        .add_option("--device", device,
                    "Use the device at this location: a volume, or a folder that holds a "
                    "receiver's files")
        ->type_name("LOCATION");
}

CLI::Option* CommandTable::addDeviceOption(CLI::App& command, std::optional<std::string>& device)
{
    return command
        .add_option("--device", device,
                    "Use the device at this location: a volume, a serial port, or a folder that "
                    "holds a receiver's files")
        ->type_name("LOCATION");
}

// Returns --mount and --eject.
std::vector<const CLI::Option*> CommandTable::addDiskOptions(CLI::App& command, DiskOptions& disk)
{
    return {command.add_flag("--mount", disk.mount,
                             "If the receiver's disk is not mounted, mount it, and unmount it "
                             "afterwards"),
            command.add_flag("--eject", disk.eject,
                             "When everything is done, unmount the receiver's disk and switch the "
                             "receiver off, so that it can be unplugged")};
}

void CommandTable::addFixDatesOption(CLI::App& command, DateRule& rule)
{
    command
        .add_option_function<std::string>(
            "--fix-dates",
            [&rule](const std::string& text) {
                const auto read = readDateRule(text);
                if (!read)
                    throw CLI::ValidationError{
                        "--fix-dates",
                        fmt::format("\"{}\" is not auto, off or a number of weeks from -{} to {}",
                                    text, DateRule::kMostWeeks, DateRule::kMostWeeks)};
                rule = *read;
            },
            "Correct the dates of a receiver whose week count has rolled over: \"auto\" adds "
            "1024 weeks to dates that look 1024 weeks old, a number adds that many weeks to all "
            "dates; the default is \"off\"")
        ->type_name("auto|off|WEEKS");
}

void CommandTable::addSplitGapOption(CLI::App& command, GapRule& rule)
{
    command
        .add_option_function<std::string>(
            "--split-gap",
            [&rule](const std::string& text) {
                const auto read = readGapRule(text);
                if (!read)
                    throw CLI::ValidationError{
                        "--split-gap",
                        fmt::format("\"{}\" is not off, a time such as 30s, 10min or 2h, or a "
                                    "distance such as 500m or 2km",
                                    text)};
                rule = *read;
            },
            "Begin a new segment of a track also where more than this time (10min) or distance "
            "(500m) is between two points. The default is only at jumps that no receiver can "
            "make; \"off\" keeps tracks whole")
        ->type_name("off|TIME|DISTANCE");
}

void CommandTable::addDownloadOptions(CLI::App& command, DownloadOptions& options)
{
    addDriverOption(command, options.driver, kAnyDriver);
    addOutputOptions(command, options);
    addRecordOptions(command, options);
}

void CommandTable::addTitleOption(CLI::App& command, DownloadOptions& options)
{
    command
        .add_option("--title", options.title,
                    "The title of the page (--format html), instead of the file's name")
        ->type_name("TITLE");
}

void CommandTable::addTilesOptions(CLI::App& command, DownloadOptions& options)
{
    command
        .add_option_function<std::string>(
            "--tiles",
            [&options](const std::string& text) {
                if (const auto mistake = tilesMistake(text); !mistake.empty())
                    throw CLI::ValidationError{"--tiles", mistake};
                options.tiles = text;
            },
            "The page's map tiles, as \"https://tile.example.org/{z}/{x}/{y}.png\". They are "
            "loaded "
            "only when the reader of the page presses \"Map\"")
        ->type_name("URL");
    command
        .add_option("--tiles-attribution", options.tilesAttribution,
                    "Whose map the tiles are, as the page says; the default is their server's name")
        ->type_name("OWNER");
}

// The format's name is looked up in finish(), because it may also come from the output's extension.
void CommandTable::addOutputOptions(CLI::App& command, DownloadOptions& options)
{
    command
        .add_option("-o,--output", options.output,
                    "Write the records to this file; \"-\" is stdout")
        ->type_name("FILE");
    command
        .add_option("--format", raw_.format,
                    "The output's format, if the file's extension does not name it: " +
                        formatNames())
        ->type_name("FORMAT");
    addTitleOption(command, options);
    addTilesOptions(command, options);
    command.add_flag("--summary", options.summary,
                     "Print the summary table even though there is an output file");
    const auto* const list = command.add_flag(
        "--list", options.list, "List what is there, with names, dates and lengths; write no file");
    for (const auto* const other : {"--output", "--summary"})
        exclude(list, command.get_option(other));
    exclude(list, app_.get_option("--events"));
    command.add_flag(
        "--utc", options.utc,
        "Show the times of the summary and the list in UTC, instead of by the clocks of "
        "the nearest town");
}

void CommandTable::addRecordOptions(CLI::App& command, DownloadOptions& options)
{
    command.add_flag("--strict", options.strict,
                     "Exit with status 1 if lines of a device's file are damaged");
    addFixDatesOption(command, options.fixDates);
    addSplitGapOption(command, options.splitGap);
    addChoiceOptions(command, options.choice);
    const auto* const json =
        command
            .add_option_function<std::string>(
                "--options",
                [&options](const std::string& text) {
                    options.driverOptions = readJsonObject(text);
                    if (const auto repeated = repeatedJsonKey(text))
                        throw CLI::ValidationError{"--options",
                                                   fmt::format("the key \"{}\" is there twice",
                                                               displayText(repeated->key))};
                    if (!options.driverOptions)
                        throw CLI::ValidationError{"--options",
                                                   "not a JSON object such as {\"tracks\":true}"};
                },
                "Pass exactly this JSON object to the driver as its options; not with --no-...")
            ->type_name("JSON");
    const auto addKind = [&](const char* name, bool& kind, const char* description) {
        exclude(json, command.add_flag_callback(
                          name, [&kind] { kind = false; }, description));
    };
    addKind("--no-waypoints", options.waypoints, "Skip waypoints and geocaches");
    addKind("--no-routes", options.routes, "Skip routes");
    addKind("--no-tracks", options.tracks, "Skip tracks");
    exclude(command.get_option("--track"), command.get_option("--no-tracks"));
}

// Both ends of the range are set by options of their own.
void CommandTable::addTimeOption(CLI::App& command, const char* name, RecordChoice& choice,
                                 std::int64_t TimeRange::*end, const char* description)
{
    command
        .add_option_function<std::string>(
            name,
            [name, end, &choice](const std::string& text) {
                const auto range = readTimeRange(text);
                if (!range)
                    throw CLI::ValidationError{
                        name, fmt::format("\"{}\" is not a date such as 2026-08-30, or a time such "
                                          "as 2026-08-30T10:15",
                                          text)};
                if (!choice.times)
                    choice.times.emplace();
                (*choice.times).*end = (*range).*end;
            },
            description)
        ->type_name("DATE");
}

void CommandTable::addChoiceOptions(CLI::App& command, RecordChoice& choice)
{
    addTimeOption(command, "--since", choice, &TimeRange::first,
                  "Keep only what was recorded from this date on: 2026-08-30, or "
                  "2026-08-30T10:15 with an optional Z for UTC; by this computer's clock "
                  "otherwise. What has no time is kept");
    addTimeOption(command, "--until", choice, &TimeRange::last,
                  "Keep only what was recorded up to the end of this date, minute or second");
    command
        .add_option("--track", choice.trackNames,
                    "Of the tracks, keep only those with this name; may be repeated, and may be "
                    "a pattern such as \"Day *\"")
        ->type_name("PATTERN")
        ->allow_extra_args(false);
    command.add_flag_callback(
        "--no-geocaches", [&choice] { choice.geocaches = false; }, "Leave out geocaches");
}

void CommandTable::addDevices()
{
    auto& options = raw_.devices;
    auto& command = addCommand("devices", "List each driver's devices", Command::kDevices,
                               "  magellangps devices --watch\n"
                               "  magellangps devices --explain   why a receiver is not found\n"
                               "  magellangps devices --ask --device /dev/ttyS0\n");
    const auto* const watch = command.add_flag(
        "--watch", options.watch, "Keep running, and print again when volumes or ports change");
    exclude(watch, command.add_flag("--ask", options.ask,
                                    "Ask the receivers on serial ports for their model and "
                                    "firmware, which takes some seconds for each, and a minute "
                                    "where none answers"));
    command
        .add_option("--device", options.device,
                    "With --ask: ask the receiver on this port; without it those are asked that "
                    "acquire asks by itself")
        ->type_name("PORT");
    command.add_flag("--explain", options.explain,
                     "Show how each volume and port was judged, and why");
}

void CommandTable::addAcquire()
{
    auto& options = raw_.acquire;
    auto& command = addCommand("acquire", "Download from a device", Command::kAcquire,
                               "  magellangps acquire -o trip.gpx\n"
                               "  magellangps acquire --device /media/RECEIVER --no-tracks\n"
                               "  magellangps acquire --card /media/CARD -o trip.gpx\n");
    addDownloadOptions(command, options);
    const auto* const device = addDeviceOption(command, options.device);
    const auto* const card =
        command
            .add_option("--card", options.card,
                        "Import all files of receivers in and below this folder, such as a memory "
                        "card or a copy of it; not with --no-...")
            ->type_name("DIR");
    exclude(device, card);
    for (const auto* const option : addDiskOptions(command, options.disk))
        exclude(card, option);
    exclude(card, command.add_flag("--new-only", options.newOnly,
                                   "Keep only what has not been saved from that receiver before; "
                                   "watch has the same memory"));
    for (const auto* const kind : {"--no-waypoints", "--no-routes", "--no-tracks"})
        exclude(card, command.get_option(kind));
}

void CommandTable::addImport()
{
    auto& options = raw_.import;
    auto& command = addCommand(
        "import", "Import files that were copied from a receiver, or GPX, KML and KMZ files",
        Command::kImport,
        "  magellangps import TKLG001.log Home.upt -o trip.gpx\n"
        "  magellangps import folder -o trip.gpx\n");
    addDownloadOptions(command, options);
    command
        .add_option("files", options.files,
                    "The files to import, one operation each; a folder means all files of "
                    "receivers in and below it")
        ->type_name("FILE")
        ->required();
}

void CommandTable::addOpen()
{
    auto& options = raw_.open;
    auto& command = addCommand(
        "open", "Show what is on a device, or in files, as a page in the browser", Command::kOpen,
        "  magellangps open\n"
        "  magellangps open trip.gpx TKLG001.log\n");
    addDriverOption(command, options.driver, kAnyDriver);
    addTilesOptions(command, options);
    addRecordOptions(command, options);
    const auto* const device = addDeviceOption(command, options.device);
    const auto* const files =
        command
            .add_option("files", options.files,
                        "Files to import instead of reading a device; a folder means all files of "
                        "receivers in and below it")
            ->type_name("FILE");
    exclude(device, files);
    for (const auto* const option : addDiskOptions(command, options.disk))
        exclude(files, option);
}

CLI::Option* CommandTable::addBackupOptions(CLI::App& command, std::optional<std::string>& folder,
                                            std::uint32_t& mostBackups)
{
    command
        .add_option_function<std::string>(
            "--keep-backups",
            [&mostBackups](const std::string& text) {
                mostBackups = static_cast<std::uint32_t>(toNumber("--keep-backups", text, 1));
            },
            // The number is BackupPolicy::kDefaultCount.
            "How many backups of a device to keep; the default is 10")
        ->type_name("N");
    return command
        .add_option("--backup", folder,
                    "Store backups in this folder instead of the user's state folder")
        ->type_name("DIR");
}

void CommandTable::addSend()
{
    auto& options = raw_.send;
    auto& command = addCommand("send", "Send GPX files to a device", Command::kSend,
                               "  magellangps send trip.gpx --dry-run\n"
                               "  magellangps send trip.gpx --device /media/RECEIVER\n");
    addDiskDeviceOptions(command, options.driver, options.device);
    // Not required(): --data can take their place, and finish() checks that one of them is given.
    const auto* const files =
        command.add_option("files", options.files, "The GPX files to send")->type_name("FILE");
    const auto* const data =
        command
            .add_option("--data", options.data,
                        "Send the data dictionary in this JSON file, unchanged, instead of GPX "
                        "files")
            ->type_name("FILE");
    const auto* const backup = addBackupOptions(command, options.backupFolder, options.mostBackups);
    const auto* const noBackup = command.add_flag_callback(
        "--no-backup", [&options] { options.backup = false; },
        "Do not back up the device's data folders before sending");
    const auto* const dryRun = command.add_flag("--dry-run", options.dryRun,
                                                "Show what would be sent, and change nothing");
    exclude(dryRun, addDiskOptions(command, options.disk).back());
    const auto* const exactNames = command.add_flag(
        "--exact-names", options.exactNames,
        "Send names and texts as they are in the files, without fitting them to the device");
    const auto* const joinSegments =
        command.add_flag("--join-segments", options.joinSegments,
                         "Send the segments of a track as one track instead of one each");
    const auto* const again =
        command.add_flag("--again", options.again, "Send also what the device holds already");
    exclude(files, data);
    exclude(backup, noBackup);
    exclude(data, exactNames);
    exclude(data, joinSegments);
    exclude(data, again);
}

void CommandTable::addRestore()
{
    auto& options = raw_.restore;
    auto& command =
        addCommand("restore", "List the backups of a device, or restore one", Command::kRestore,
                   "  magellangps restore\n"
                   "  magellangps restore 20260830T101500Z\n");
    addDiskDeviceOptions(command, options.driver, options.device);
    addBackupOptions(command, options.backupFolder, options.mostBackups);
    (void)addDiskOptions(command, options.disk);
    command.add_flag("--force", options.force, "Restore a backup although it is of another device");
    command
        .add_option("backup", options.backup,
                    "The backup to restore: its name in the list, or its folder")
        ->type_name("BACKUP");
}

void CommandTable::addWatch()
{
    auto& options = raw_.watch;
    auto& command = addCommand(
        "watch", "Wait for receivers and download each one that appears into its own file",
        Command::kWatch,
        "  magellangps watch --into tracks --new-only\n"
        "  magellangps watch --serial --format kml\n");
    command
        .add_option("--into", options.into,
                    "Write the files into this folder instead of the current one")
        ->type_name("DIR");
    command
        .add_option("--format", raw_.format,
                    "The format of the files; the default is gpx. One of: " + formatNames())
        ->type_name("FORMAT");
    command.add_flag("--new-only", options.newOnly,
                     "Save only what has not been saved from that receiver before");
    command.add_flag(
        "--mount", options.mount,
        "Mount each disk that appears and that nobody else mounts, and unmount it when "
        "its receiver has been downloaded from");
    command.add_flag("--notify", options.notify,
                     "Show a notification of each download on the desktop");
    const auto* const serial = command.add_flag(
        "--serial", options.serial,
        "Watch serial ports, too. Finding out that no receiver answers on a port takes a minute "
        "and a half");
    exclude(serial, addDriverOption(command, options.driver, "Watch only this driver's devices"));
    addFixDatesOption(command, options.fixDates);
    addSplitGapOption(command, options.splitGap);
}

void CommandTable::addHelp()
{
    addCommand("help", "Print the help of the program or of a command", Command::kHelp,
               "  magellangps help acquire\n")
        .add_option("command", raw_.helpTopic, "The command")
        ->type_name("COMMAND");
}

void CommandTable::exclude(const CLI::Option* first, const CLI::Option* second)
{
    exclusions_.push_back({first, second});
}

} // namespace host
