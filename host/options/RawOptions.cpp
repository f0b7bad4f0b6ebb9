// SPDX-License-Identifier: MIT
// One check per command. Each returns a message for the user, or an empty text.

#include "host/options/RawOptions.h"

#include <gps/Characters.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace host {
namespace {

constexpr char kJsonOrEvents[] = "--json and --events both need stdout: leave one of them out";

std::string noEvents(std::string_view command)
{
    return fmt::format("--events is for acquire, import and send, not for {}", command);
}

std::string extensionOf(const std::string& path)
{
    auto extension = std::filesystem::path{path}.extension().string();
    extension.erase(0, 1);
    return extension;
}

// The format of a name or of an extension, in either case.
const Format* formatNamed(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(), gps::lowerCase);
    return findFormat(name);
}

std::string unknownFormat(const std::string& name)
{
    return fmt::format("unknown output format \"{}\"; the formats are: {}", name, formatNames());
}

std::string checkOutput(const RawOptions& raw, DownloadOptions& options)
{
    if (!options.output)
        return raw.format ? "--format needs an output file: name one with -o" : "";
    if (options.output == "-" && !raw.format)
        return fmt::format("stdout has no extension: name its format with --format ({})",
                           formatNames());
    if (options.output == "-" && raw.global.events)
        return "--events and -o - both need stdout: leave one of them out";
    if (options.output == "-" && options.summary)
        return "--summary and -o - both need stdout: leave one of them out";
    if (options.output->empty())
        return "the name of the output file is empty";
    const auto name = raw.format.value_or(extensionOf(*options.output));
    if (name.empty() && !raw.format)
        return fmt::format(
            "the output file \"{}\" has no extension: name its format with --format ({})",
            *options.output, formatNames());
    options.format = formatNamed(name);
    return options.format == nullptr ? unknownFormat(name) : "";
}

// Event lines show every call of the plug-in.
std::string checkChoice(const RawOptions& raw, const DownloadOptions& options)
{
    const auto& times = options.choice.times;
    if (times && times->first > times->last)
        return "--since is later than --until";
    if (!raw.global.events || options.output)
        return {};
    return options.choice.isEverything() && options.splitGap.isDefault() && !raw.acquire.newOnly
               ? ""
               : "--events shows every record, whatever was chosen: leave --events out, or name an "
                 "output file with -o";
}

constexpr char kForPage[] = "is for the page: write one with -o FILE.html";

// An attribution without a page is ignored: it may be a default in the configuration file, whose
// tiles do not fit then.
std::string checkTiles(const DownloadOptions& options)
{
    return options.tilesAttribution && !options.tiles
               ? "--tiles-attribution says whose map --tiles is: give both"
               : "";
}

std::string checkPage(const DownloadOptions& options)
{
    if (options.format != nullptr && options.format->name == "html")
        return checkTiles(options);
    if (options.title)
        return fmt::format("--title {}", kForPage);
    return options.tiles ? fmt::format("--tiles {}", kForPage) : "";
}

std::string checkJson(const RawOptions& raw, const DownloadOptions& options)
{
    if (!raw.global.json)
        return {};
    if (raw.global.events)
        return kJsonOrEvents;
    if (options.summary)
        return "--json and --summary both need stdout: leave one of them out";
    return options.output == "-" ? "--json and -o - both need stdout: leave one of them out" : "";
}

std::string check(const RawOptions& raw, DownloadOptions& options)
{
    if (auto mistake = checkOutput(raw, options); !mistake.empty())
        return mistake;
    if (auto mistake = checkChoice(raw, options); !mistake.empty())
        return mistake;
    if (raw.global.events && options.summary)
        return "--events and --summary both need stdout: leave one of them out";
    if (auto mistake = checkPage(options); !mistake.empty())
        return mistake;
    return checkJson(raw, options);
}

std::string check(const RawOptions& raw, ImportOptions& options)
{
    const auto& files = options.files;
    if (std::find(files.begin(), files.end(), "-") != files.end())
        return "import reads files, not stdin, because a file's extension names its kind: save the "
               "input as a file such as trip.log";
    return check(raw, static_cast<DownloadOptions&>(options));
}

std::string check(const RawOptions& raw, const OpenOptions& options)
{
    if (raw.global.events)
        return noEvents("open");
    if (raw.global.json)
        return "--json is not for open, which makes a page";
    const auto& files = options.files;
    if (std::find(files.begin(), files.end(), "-") != files.end())
        return "open reads files, not stdin: save the input as a file such as trip.log";
    if (auto mistake = checkTiles(options); !mistake.empty())
        return mistake;
    return checkChoice(raw, options);
}

std::string check(const RawOptions& raw, const SendOptions& options)
{
    if (raw.global.json && raw.global.events)
        return kJsonOrEvents;
    const auto& files = options.files;
    if (std::find(files.begin(), files.end(), "-") != files.end() || options.data == "-")
        return "send reads files, not stdin: save the input as a file";
    return files.empty() && !options.data ? "no FILE to send is given, and no --data" : "";
}

std::string check(const RawOptions& raw, const RestoreOptions& options)
{
    if (options.disk.eject && !options.backup)
        return "--eject needs a BACKUP to restore";
    return raw.global.events ? noEvents("restore") : "";
}

std::string check(const RawOptions& raw, const InfoOptions& /*options*/)
{
    return raw.global.events ? noEvents("info") : "";
}

std::string check(const RawOptions& raw, const DevicesOptions& options)
{
    if (options.device && !options.ask)
        return "--device names the port that --ask asks; a folder with a receiver's files is "
               "listed with --test-folder";
    return raw.global.events ? noEvents("devices") : "";
}

std::string check(const RawOptions& raw, WatchOptions& options)
{
    if (raw.global.events)
        return noEvents("watch");
    if (raw.global.json)
        return "--json is not for watch, which prints its own lines";
    if (options.into.empty())
        return "--into needs a folder; \".\" is the current one";
    options.format = formatNamed(raw.format.value_or("gpx"));
    return options.format == nullptr ? unknownFormat(*raw.format) : "";
}

template <typename Options>
std::string finish(const RawOptions& raw, Options options, std::optional<CommandOptions>& finished)
{
    static_cast<GlobalOptions&>(options) = raw.global;
    auto mistake = check(raw, options); // for acquire the overload of its base class
    if (mistake.empty())
        finished = options;
    return mistake;
}

} // namespace

std::string finish(const RawOptions& raw, std::optional<CommandOptions>& options)
{
    switch (raw.command) {
    case Command::kInfo:
        return finish(raw, InfoOptions{}, options);
    case Command::kDevices:
        return finish(raw, raw.devices, options);
    case Command::kAcquire:
        return finish(raw, raw.acquire, options);
    case Command::kImport:
        return finish(raw, raw.import, options);
    case Command::kOpen:
        return finish(raw, raw.open, options);
    case Command::kSend:
        return finish(raw, raw.send, options);
    case Command::kRestore:
        return finish(raw, raw.restore, options);
    case Command::kWatch:
        return finish(raw, raw.watch, options);
    case Command::kHelp: // has no options
        break;
    }
    return {};
}

bool isFormatNamedByExtension(const RawOptions& raw)
{
    const auto& options = raw.command == Command::kImport
                              ? static_cast<const DownloadOptions&>(raw.import)
                              : static_cast<const DownloadOptions&>(raw.acquire);
    return options.output && formatNamed(extensionOf(*options.output)) != nullptr;
}

std::string formatMistake(const std::string& name)
{
    return formatNamed(name) == nullptr ? unknownFormat(name) : "";
}

} // namespace host
