// SPDX-License-Identifier: MIT
// One check per command. Each returns a message for the user, or an empty text.

#include "host/cli/RawOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

namespace host {
namespace {

constexpr char kJsonOrEvents[] = "--json and --events both need stdout: leave one of them out";

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
        return raw.format ? "--format needs an output file: name one with -o" : "";
    if (options.output == "-" && !raw.format)
        return fmt::format("stdout has no extension: name its format with --format ({})",
                           formatNames());
    if (options.output == "-" && raw.global.events)
        return "--events and -o - both need stdout: leave one of them out";
    if (options.output == "-" && options.summary)
        return "--summary and -o - both need stdout: leave one of them out";
    const auto name = raw.format.value_or(extensionOf(*options.output));
    if (name.empty() && !raw.format)
        return fmt::format(
            "the output file \"{}\" has no extension: name its format with --format ({})",
            *options.output, formatNames());
    options.format = findFormat(name);
    return options.format == nullptr ? unknownFormat(name) : "";
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
    if (raw.global.events && options.summary)
        return "--events and --summary both need stdout: leave one of them out";
    return checkJson(raw, options);
}

std::string check(const RawOptions& raw, const SendOptions& options)
{
    if (raw.global.json && raw.global.events)
        return kJsonOrEvents;
    return options.files.empty() && !options.data ? "no FILE to send is given, and no --data" : "";
}

std::string check(const RawOptions& raw, const RestoreOptions& /*options*/)
{
    return raw.global.json && raw.global.events ? kJsonOrEvents : "";
}

std::string check(const RawOptions& raw, WatchOptions& options)
{
    if (raw.global.events)
        return "--events is for acquire, import and send; watch prints its own lines";
    if (raw.global.json)
        return "--json is not for watch, which prints its own lines";
    options.format = findFormat(raw.format.value_or("gpx"));
    return options.format == nullptr ? unknownFormat(*raw.format) : "";
}

// The other commands have nothing to check.
std::string check(const RawOptions& /*raw*/, const GlobalOptions& /*options*/)
{
    return {};
}

template <typename Options>
std::string finish(const RawOptions& raw, Options options, std::optional<CommandOptions>& finished)
{
    static_cast<GlobalOptions&>(options) = raw.global;
    // The overload of check() is that of the nearest base class: DownloadOptions for acquire and
    // import.
    auto mistake = check(raw, options);
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
    case Command::kSend:
        return finish(raw, raw.send, options);
    case Command::kRestore:
        return finish(raw, raw.restore, options);
    case Command::kWatch:
        return finish(raw, raw.watch, options);
    }
    return {};
}

} // namespace host
