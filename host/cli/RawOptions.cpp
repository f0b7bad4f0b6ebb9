// SPDX-License-Identifier: MIT
// One check per command, which calls those of the options that several commands have. Each answers
// with a message for the user, or with an empty text.

#include "host/cli/RawOptions.h"

#include "host/base/JsonText.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace host {
namespace {

std::string extensionOf(const std::string& path)
{
    auto extension = std::filesystem::path{path}.extension().string();
    extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return extension;
}

std::string unknownFormat(const std::string& name)
{
    return fmt::format("unknown output format \"{}\"; the formats are: {}", name, formatNames());
}

std::string checkOutput(const RawOptions& raw, DownloadOptions& options)
{
    if (!options.output)
        return raw.format ? "--format is for an output file: name one with -o" : "";
    if (options.output == "-" && !raw.format)
        return fmt::format(
            "the standard output has no extension: name its format with --format ({})",
            formatNames());
    if (options.output == "-" && raw.global.events)
        return "--events and -o - both want the standard output";
    if (options.output == "-" && options.summary)
        return "--summary and -o - both want the standard output";
    const auto name = raw.format.value_or(extensionOf(*options.output));
    if (name.empty() && !raw.format)
        return fmt::format(
            "the output file \"{}\" has no extension: name its format with --format ({})",
            *options.output, formatNames());
    options.format = findFormat(name);
    return options.format == nullptr ? unknownFormat(name) : "";
}

std::string checkFixDates(const RawOptions& raw, DateRule& fixDates)
{
    if (!raw.fixDates)
        return {};
    const auto rule = readDateRule(*raw.fixDates);
    if (!rule)
        return fmt::format(
            "--fix-dates wants auto, off or a number of weeks, at most {} either way",
            DateRule::kMostWeeks);
    fixDates = *rule;
    return {};
}

std::string checkDriverOptions(const RawOptions& raw, DownloadOptions& options)
{
    options.waypoints = !raw.noWaypoints;
    options.routes = !raw.noRoutes;
    options.tracks = !raw.noTracks;
    if (!raw.driverOptions)
        return {};
    options.driverOptions = readJsonObject(*raw.driverOptions);
    return options.driverOptions ? "" : "--options wants a JSON object, as {\"tracks\":true}";
}

std::string checkMostBackups(std::uint32_t mostBackups)
{
    return mostBackups == 0 ? "--keep-backups wants at least 1; --no-backup makes none" : "";
}

std::string check(const RawOptions& raw, DownloadOptions& options)
{
    if (auto mistake = checkOutput(raw, options); !mistake.empty())
        return mistake;
    if (raw.global.events && options.summary)
        return "--events and --summary both want the standard output";
    if (auto mistake = checkFixDates(raw, options.fixDates); !mistake.empty())
        return mistake;
    return checkDriverOptions(raw, options);
}

std::string check(const RawOptions& raw, SendOptions& options)
{
    options.backup = !raw.noBackup;
    if (options.files.empty() && !options.data)
        return "no FILE to send is given, and no --data";
    return checkMostBackups(options.mostBackups);
}

std::string check(const RawOptions& /*raw*/, RestoreOptions& options)
{
    return checkMostBackups(options.mostBackups);
}

std::string check(const RawOptions& raw, WatchOptions& options)
{
    if (raw.global.events)
        return "--events is for acquire, import and send: watch prints lines of its own";
    options.format = findFormat(raw.format.value_or("gpx"));
    if (options.format == nullptr)
        return unknownFormat(*raw.format);
    return checkFixDates(raw, options.fixDates);
}

std::string check(const RawOptions& /*raw*/, const GlobalOptions& /*options*/)
{
    return {};
}

template <typename Options>
std::string finish(const RawOptions& raw, Options options, std::optional<CommandOptions>& finished)
{
    static_cast<GlobalOptions&>(options) = raw.global;
    auto mistake = check(raw, options);
    if (mistake.empty())
        finished = std::move(options);
    return mistake;
}

} // namespace

std::string finish(RawOptions raw, std::optional<CommandOptions>& options)
{
    switch (raw.command) {
    case Command::kInfo:
        return finish(raw, InfoOptions{}, options);
    case Command::kDevices:
        return finish(raw, std::move(raw.devices), options);
    case Command::kAcquire:
        return finish(raw, std::move(raw.acquire), options);
    case Command::kImport:
        return finish(raw, std::move(raw.import), options);
    case Command::kSend:
        return finish(raw, std::move(raw.send), options);
    case Command::kRestore:
        return finish(raw, std::move(raw.restore), options);
    case Command::kWatch:
        return finish(raw, std::move(raw.watch), options);
    }
    return {};
}

} // namespace host
