// SPDX-License-Identifier: MIT

#include "host/cli/Options.h"

#include "host/base/Text.h"
#include "host/cli/NearestName.h"
#include "host/cli/RawOptions.h"
#include "host/completions/Completions.h"
#include "host/formats/Formats.h"

#include <CLI/CLI.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr char kExamples[] = R"(
Examples:
  magellangps devices                              what is connected
  magellangps acquire -o trip.gpx                  download everything as GPX
  magellangps acquire --test-folder copy --events  a receiver's copied files, call by call
  magellangps import TKLG001.log -o track.gpx      one file off a receiver
  magellangps send trip.gpx --dry-run              what a send would change
)";

constexpr char kGlobalHint[] =
    "The global options of \"magellangps --help\" are accepted here, too.\n";

void addGlobalOptions(CLI::App& app, RawOptions& raw)
{
    auto& options = raw.global;
    app.add_option("--plugin", options.plugin,
                   "Load this plug-in bundle instead of the installed one")
        ->type_name("BUNDLE");
    app.add_option("--test-folder", options.testFolders,
                   "Treat this folder like a mounted volume; may be repeated")
        ->type_name("DIR")
        ->allow_extra_args(false);
    app.add_option("--debug", options.debug,
                   "Put \"debug\" with this number into the operation's options")
        ->type_name("N");
    app.add_flag("--json", options.json, "Print what info and devices tell as one JSON document");
    app.add_flag("--events", options.events,
                 "Print each call that the plug-in makes as one JSON line, then a result line");
    auto* const quiet =
        app.add_flag("-q", options.quiet, "Write nothing but errors on the standard error stream");
    app.add_flag("-v", options.verbose,
                 "Print the system log's lines on the standard error stream, too")
        ->excludes(quiet);
}

void addFixDatesOption(CLI::App& command, RawOptions& raw)
{
    command
        .add_option("--fix-dates", raw.fixDates,
                    "Mend dates of a receiver whose week count has rolled over: \"auto\" adds 1024 "
                    "weeks to those that look 1024 weeks "
                    "old, a number adds so many to all; by default \"off\"")
        ->type_name("auto|off|WEEKS");
}

void addDownloadOptions(CLI::App& command, RawOptions& raw, DownloadOptions& options)
{
    command.add_option("--driver", options.driver, "Use the driver of this name, ready or not")
        ->type_name("NAME");
    command
        .add_option("-o,--output", options.output,
                    "Write the records to this file; \"-\" is the standard output")
        ->type_name("FILE");
    command
        .add_option("--format", raw.format,
                    "The output's format, where the file's extension does not tell: " +
                        formatNames())
        ->type_name("FORMAT");
    command.add_flag("--summary", options.summary,
                     "Print the summary table, although there is an output file");
    addFixDatesOption(command, raw);
    auto* const json =
        command.add_option("--options", raw.driverOptions,
                           "Hand exactly this JSON object to the driver as its options");
    json->type_name("JSON");
    command.add_flag("--no-waypoints", raw.noWaypoints, "Leave out waypoints and geocaches")
        ->excludes(json);
    command.add_flag("--no-routes", raw.noRoutes, "Leave out routes")->excludes(json);
    command.add_flag("--no-tracks", raw.noTracks, "Leave out tracks")->excludes(json);
}

void addDeviceOption(CLI::App& command, std::optional<std::string>& device)
{
    command
        .add_option("--device", device,
                    "Use the device at this place; a folder with a receiver's files will do")
        ->type_name("LOCATION");
}

template <typename Options> CLI::Option* addBackupOptions(CLI::App& command, Options& options)
{
    command
        .add_option("--keep-backups", options.mostBackups,
                    "Keep so many backups of a device, by default 10")
        ->type_name("N");
    return command
        .add_option("--backup", options.backupFolder,
                    "Keep the backups in this folder instead of the user's state folder")
        ->type_name("DIR");
}

void addSendOptions(CLI::App& command, RawOptions& raw)
{
    auto& options = raw.send;
    command.add_option("--driver", options.driver, "Use the driver of this name, ready or not")
        ->type_name("NAME");
    addDeviceOption(command, options.device);
    auto* const files =
        command.add_option("files", options.files, "The GPX files to send")->type_name("FILE");
    auto* const data = command.add_option(
        "--data", options.data, "Send this JSON file's data dictionary instead, as it stands");
    data->type_name("FILE")->excludes(files);
    auto* const backup = addBackupOptions(command, options);
    command.add_flag("--no-backup", raw.noBackup, "Keep no copy of the device's data folders")
        ->excludes(backup);
    command.add_flag("--dry-run", options.dryRun, "Say what would be sent, and change nothing");
    command
        .add_flag("--exact-names", options.exactNames,
                  "Leave names and texts as the files have them")
        ->excludes(data);
}

void addRestoreOptions(CLI::App& command, RawOptions& raw)
{
    auto& options = raw.restore;
    command.add_option("--driver", options.driver, "Use the driver of this name, ready or not")
        ->type_name("NAME");
    addDeviceOption(command, options.device);
    addBackupOptions(command, options);
    command
        .add_option("backup", options.backup, "The backup to put back, as listed, or its folder")
        ->type_name("BACKUP");
}

void addDevicesOptions(CLI::App& command, RawOptions& raw)
{
    command.add_flag("--watch", raw.devices.watch,
                     "Stay, and print again when volumes or ports come and go");
    command.add_flag("--explain", raw.devices.explain,
                     "Tell of every volume and port what was made of it, and why");
}

void addWatchOptions(CLI::App& command, RawOptions& raw)
{
    auto& options = raw.watch;
    command
        .add_option("--into", options.into,
                    "Write the files into this folder instead of the present one")
        ->type_name("DIR");
    command
        .add_option("--format", raw.format, "The files' format instead of GPX: " + formatNames())
        ->type_name("FORMAT");
    command.add_flag("--new-only", options.newOnly,
                     "Save only what was not saved from that receiver before");
    auto* const serial = command.add_flag(
        "--serial", options.serial,
        "Watch serial ports, too: each one that appears is asked for a receiver, which takes a "
        "minute and a half where there is none");
    command
        .add_option("--driver", options.driver,
                    "Watch the devices of the driver of this name alone")
        ->type_name("NAME")
        ->excludes(serial);
    addFixDatesOption(command, raw);
}

void addCommands(CLI::App& app, RawOptions& raw)
{
    const auto add = [&](const char* name, const char* what, Command command,
                         const char* examples) {
        auto* const added = app.add_subcommand(name, what);
        added->fallthrough()->footer(std::string{kGlobalHint} + "\nExamples:\n" + examples);
        added->parse_complete_callback([&raw, command] { raw.command = command; });
        return added;
    };
    add("info", "Show the plug-in and its drivers", Command::kInfo, "  magellangps info --json");
    addDevicesOptions(*add("devices", "List each driver's devices", Command::kDevices,
                           "  magellangps devices --watch\n  magellangps devices --explain        "
                           "why a receiver is not found"),
                      raw);
    auto* const acquire = add("acquire", "Download from a device", Command::kAcquire,
                              "  magellangps acquire -o trip.gpx\n  magellangps acquire --device "
                              "/media/RECEIVER --no-tracks");
    addDownloadOptions(*acquire, raw, raw.acquire);
    addDeviceOption(*acquire, raw.acquire.device);
    auto* const import =
        add("import", "Import sentence files, each as one operation", Command::kImport,
            "  magellangps import TKLG001.log Home.upt -o trip.gpx");
    addDownloadOptions(*import, raw, raw.import);
    import->add_option("files", raw.import.files, "The files to import")
        ->type_name("FILE")
        ->required();
    addSendOptions(*add("send", "Send GPX files to a device", Command::kSend,
                        "  magellangps send trip.gpx --dry-run\n  magellangps send trip.gpx "
                        "--device /media/RECEIVER"),
                   raw);
    addRestoreOptions(*add("restore", "List the backups that sends have made, or put one back",
                           Command::kRestore,
                           "  magellangps restore\n  magellangps restore 20260830T101500Z"),
                      raw);
    addWatchOptions(
        *add("watch", "Stay, and acquire from every receiver that appears, each into its own file",
             Command::kWatch,
             "  magellangps watch --into tracks --new-only\n  magellangps watch --serial --format "
             "kml"),
        raw);
}

// For whoever installs the program: not shown in the help.
const CLI::App* addCompletions(CLI::App& app, std::string& shell)
{
    auto* const added = app.add_subcommand(
        "completions", "Print the script that completes this program's command line");
    added->group("")->footer("Examples:\n  magellangps completions zsh");
    added->add_option("shell", shell, "The shell: bash, zsh or fish")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    return added;
}

void addNames(const CLI::App& app, std::vector<std::string>& names)
{
    for (const auto* option : app.get_options()) {
        for (const auto& name : option->get_lnames())
            names.push_back("--" + name);
    }
}

std::string guessFor(std::string_view word, const CLI::App& app)
{
    std::vector<std::string> names;
    addNames(app, names);
    const auto chosen = app.get_subcommands();
    for (const auto* command : app.get_subcommands({})) {
        if (chosen.empty())
            names.push_back(command->get_name());
        else if (command == chosen.front())
            addNames(*command, names);
    }
    const auto name = nearestName(word.substr(0, word.find('=')), names);
    return name.empty() ? std::string{} : "; did you mean \"" + name + "\"?";
}

ParsedCommandLine mistake(std::string_view text)
{
    return {std::nullopt, "magellangps: " + displayText(text.substr(0, text.find('\n'))) + '\n',
            ExitStatus::kUsage};
}

// The option that the parser stopped at: the first word of what it says.
const CLI::Option* optionNamed(const CLI::App& app, std::string_view name)
{
    for (const auto* command : app.get_subcommands()) {
        if (const auto* option = command->get_option_no_throw(std::string{name}))
            return option;
    }
    return app.get_option_no_throw(std::string{name});
}

// The parser's own words, which are written for whoever made the table, in a user's.
std::string inWords(const CLI::App& app, const CLI::ParseError& error)
{
    constexpr std::string_view kExcludes = " excludes ";
    std::string_view said = error.what();
    if (const auto at = said.find(kExcludes);
        dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr && at != said.npos) {
        const auto word = [](std::string_view name) {
            return std::string{name == "files" ? "a FILE" : name};
        };
        return word(said.substr(0, at)) + " and " + word(said.substr(at + kExcludes.size())) +
               " exclude each other: leave one of them out";
    }
    constexpr std::string_view kCouldNotConvert = "Could not convert: ";
    if (said.starts_with(kCouldNotConvert))
        said.remove_prefix(kCouldNotConvert.size());
    const auto name = said.substr(0, said.find_first_of(" :"));
    const auto* const option = optionNamed(app, name);
    if (option == nullptr || dynamic_cast<const CLI::ValidationError*>(&error) != nullptr)
        return std::string{said};
    if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr)
        return std::string{name} + " wants a whole number of at most 32 bits";
    if (option->count() > 1)
        return std::string{name} + " is given more than once";
    return std::string{name} + " wants a value: " + option->get_type_name();
}

std::string helpHint(const CLI::App& app)
{
    std::string command = "magellangps ";
    for (const auto* chosen : app.get_subcommands())
        command += chosen->get_name() + ' ';
    return "; see \"" + command + "--help\"";
}

ParsedCommandLine unexpected(const CLI::App& app, const CLI::ParseError& error)
{
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr)
        return mistake("no FILE to import is given");
    const auto extras = app.remaining(true);
    if (extras.empty())
        return mistake(inWords(app, error));
    const auto& word = extras.front();
    const bool isOption = word.size() > 1 && word.front() == '-';
    const bool isCommand = !isOption && app.get_subcommands().empty();
    const std::string what = isOption    ? "unknown option \""
                             : isCommand ? "unknown command \""
                                         : "unexpected argument \"";
    const auto guess = guessFor(word, app);
    return mistake(what + word + '"' + (guess.empty() ? helpHint(app) : guess));
}

// An option as "--device=", whose value the parser would take from the next word. @return  its
// name; empty: there is none
std::string withoutValue(int argc, const char* const* argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string_view word{argv[i]};
        if (word == "--")
            break;
        if (word.size() > 3 && word.starts_with("--") && word.find('=') == word.size() - 1)
            return std::string{word.substr(0, word.size() - 1)};
    }
    return {};
}

} // namespace

ParsedCommandLine parseCommandLine(int argc, const char* const* argv)
{
    RawOptions raw;
    CLI::App app{"Downloads tracks, waypoints, routes and geocaches from GPS receivers.",
                 "magellangps"};
    app.set_version_flag("--version", "magellangps " HOST_VERSION);
    app.require_subcommand(0, 1);
    app.footer(kExamples);
    addGlobalOptions(app, raw);
    addCommands(app, raw);
    std::string shell = "bash";
    const auto* const completions = addCompletions(app, shell);
    if (const auto option = withoutValue(argc, argv); !option.empty())
        return mistake(option + " has no value behind its \"=\"");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, std::string{version.what()} + '\n', ExitStatus::kSuccess};
    } catch (const CLI::Success&) {
        return {std::nullopt, app.help(), ExitStatus::kSuccess};
    } catch (const CLI::ParseError& error) {
        return unexpected(app, error);
    }
    if (app.get_subcommands().empty() && argc > 1)
        return mistake("no COMMAND is given; see \"magellangps --help\"");
    if (app.get_subcommands().empty())
        return {std::nullopt, app.help(), ExitStatus::kUsage};
    if (completions->parsed())
        return {std::nullopt, completionScript(app, shell), ExitStatus::kSuccess};
    ParsedCommandLine parsed;
    if (const auto wrong = finish(std::move(raw), parsed.options); !wrong.empty())
        return mistake(wrong);
    return parsed;
}

} // namespace host
