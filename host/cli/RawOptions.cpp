// SPDX-License-Identifier: MIT

#include "host/cli/RawOptions.h"

#include "host/base/JsonText.h"

#include <algorithm>
#include <filesystem>

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
    return "unknown output format \"" + name + "\"; the formats are: " + formatNames();
}

// What is wrong with the output options; empty: nothing.
std::string checkOutput(RawOptions& raw)
{
    auto& options = raw.options;
    if (options.command == Command::kWatch) {
        if (options.events)
            return "--events is for acquire, import and send: watch prints lines of its own";
        options.format = findFormat(raw.format.value_or("gpx"));
        return options.format == nullptr ? unknownFormat(*raw.format) : "";
    }
    if (!options.output)
        return raw.format ? "--format is for an output file: name one with -o" : "";
    if (options.output == "-" && !raw.format)
        return "the standard output has no extension: name its format with --format (" +
               formatNames() + ")";
    if (options.output == "-" && options.events)
        return "--events and -o - both want the standard output";
    if (options.output == "-" && options.summary)
        return "--summary and -o - both want the standard output";
    const auto name = raw.format.value_or(extensionOf(*options.output));
    if (name.empty() && !raw.format)
        return "the output file \"" + *options.output +
               "\" has no extension: name its format with --format (" + formatNames() + ")";
    options.format = findFormat(name);
    if (options.format == nullptr)
        return unknownFormat(name);
    return {};
}

} // namespace

std::string finish(RawOptions& raw)
{
    auto& options = raw.options;
    options.waypoints = !raw.noWaypoints;
    options.routes = !raw.noRoutes;
    options.tracks = !raw.noTracks;
    options.backup = !raw.noBackup;
    if (options.command == Command::kSend && options.files.empty() && !options.data)
        return "no FILE to send is given, and no --data";
    if (options.mostBackups == 0)
        return "--keep-backups wants at least 1; --no-backup makes none";
    if (auto wrong = checkOutput(raw); !wrong.empty())
        return wrong;
    if (options.events && options.summary)
        return "--events and --summary both want the standard output";
    if (raw.fixDates) {
        const auto rule = readDateRule(*raw.fixDates);
        if (!rule)
            return "--fix-dates wants auto, off or a number of weeks, at most " +
                   std::to_string(DateRule::kMostWeeks) + " either way";
        options.fixDates = *rule;
    }
    if (raw.driverOptions) {
        options.driverOptions = readJsonObject(*raw.driverOptions);
        if (!options.driverOptions)
            return "--options wants a JSON object, as {\"tracks\":true}";
    }
    return {};
}

} // namespace host
