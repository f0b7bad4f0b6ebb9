// SPDX-License-Identifier: MIT
// An option's type name decides where its values come from. Options that were typed before the word
// count here as they would in a run: --plugin, --test-folder, --driver, --device and --backup.

#include "host/cli/CompleteCommand.h"

#include "host/backup/Backup.h"
#include "host/bundle/DeviceChoice.h"
#include "host/bundle/PlugInBundle.h"
#include "host/commandline/Completion.h"
#include "host/commandline/HelpFormatter.h"
#include "host/formats/Formats.h"
#include "host/options/CommandTable.h"
#include "host/transfer/DeviceRestore.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <exception>
#include <optional>
#include <string_view>
#include <utility>

namespace host {
namespace {

using Answers = std::vector<std::string>;

Answers valuesOf(const TypedValues& typed, std::string_view option)
{
    const auto found = typed.find(option);
    return found == typed.end() ? Answers{} : found->second;
}

std::optional<std::string> lastOf(const TypedValues& typed, std::string_view option)
{
    const auto values = valuesOf(typed, option);
    return values.empty() ? std::nullopt : std::optional{values.back()};
}

DeviceRequest requestOf(const TypedValues& typed)
{
    return {lastOf(typed, "--driver"), lastOf(typed, "--device"), valuesOf(typed, "--test-folder")};
}

// Loads the plug-in for each question, but a run has only one: one word is completed.
std::vector<Driver> loadDrivers(const TypedValues& typed)
{
    prepareDrivers(requestOf(typed));
    const auto path = findBundle(lastOf(typed, "--plugin"));
    PlugInBundle bundle;
    if (!path || loadBundle(*path, bundle))
        return {};
    return bundle.drivers;
}

Answers driverAnswers(const TypedValues& typed)
{
    Answers answers;
    for (const auto& driver : loadDrivers(typed))
        answers.push_back(fmt::format("{}\t{}", driverName(*driver), driver->gpsName()));
    return answers;
}

Answers deviceAnswers(const TypedValues& typed)
{
    Answers answers;
    const auto wanted = lastOf(typed, "--driver");
    for (const auto& driver : loadDrivers(typed)) {
        if (wanted && driverName(*driver) != *wanted)
            continue;
        for (const auto& device : devicesOf(*driver))
            answers.push_back(
                fmt::format("{}\t{}", device.location, device.name.value_or(driver->gpsName())));
    }
    answers.emplace_back(":folders"); // a copy of a receiver's files is a device, too
    return answers;
}

Answers backupAnswers(const TypedValues& typed)
{
    Answers answers;
    ChosenDevice chosen;
    const auto failure = chooseDevice(loadDrivers(typed), requestOf(typed), chosen);
    const auto device = failure ? std::nullopt : dataFoldersOf(chosen);
    const auto given = lastOf(typed, "--backup");
    if (const auto folder = given ? given : defaultBackupFolder(); device && folder) {
        for (const auto& backup : listBackups(*folder, device->identifier))
            answers.push_back(fmt::format("{}\t{} file{}", backup.name, backup.files,
                                          backup.files == 1 ? "" : "s"));
    }
    answers.emplace_back(":folders"); // a backup can be named by its folder
    return answers;
}

// The files that an import reads, by the extensions that the drivers name.
Answers importAnswers(const TypedValues& typed)
{
    const std::string all = ":files";
    auto directive = all;
    for (const auto& driver : loadDrivers(typed)) {
        for (const auto& type : driver->fileTypes().value_or(Answers{})) {
            // Whole words are compared: one extension can begin with another.
            if ((directive + ' ').find(' ' + type + ' ') == std::string::npos)
                directive += ' ' + type;
        }
    }
    return {directive == all ? all : directive + " gpx kml kmz"};
}

Answers formatAnswers(const TypedValues& /*typed*/)
{
    Answers names;
    for (const auto& format : formats())
        names.emplace_back(format.name);
    return names;
}

ValueSource sourceFor(const CLI::App& command, const CLI::Option& option)
{
    const auto type = option.get_type_name();
    if (type == "NAME")
        return driverAnswers;
    if (type == "LOCATION")
        return deviceAnswers;
    if (type == "BACKUP")
        return backupAnswers;
    if (type == "FORMAT")
        return formatAnswers;
    if (type == "COMMAND")
        return wordSource(commandNames(*command.get_parent()));
    if (type == "BUNDLE")
        return wordSource({":folders"});
    if (type == "auto|off|WEEKS")
        return wordSource({"auto", "off"});
    if (type == "off|TIME|DISTANCE")
        return wordSource({"off"});
    if (option.get_positional() && (command.get_name() == "import" || command.get_name() == "open"))
        return importAnswers;
    if (option.get_positional() && command.get_name() == "send")
        return wordSource({":files gpx"});
    return nullptr;
}

void addSources(const CLI::App& command, ValueSources& sources)
{
    for (const auto* option : command.get_options()) {
        if (auto source = sourceFor(command, *option))
            sources[option] = std::move(source);
    }
}

} // namespace

std::string completionsFor(const std::vector<std::string>& words)
{
    try {
        CommandTable table;
        ValueSources sources;
        addSources(table.app(), sources);
        for (const auto* command : visibleCommands(table.app()))
            addSources(*command, sources);
        return completionsOf(table.app(), sources, words);
    } catch (const std::exception&) {
        return {}; // a user who is typing has no use for an error message
    }
}

} // namespace host
