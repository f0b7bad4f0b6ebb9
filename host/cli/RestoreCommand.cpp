// SPDX-License-Identifier: MIT
// `restore`: without an argument a list of backups, with one a restore.

#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/Table.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/RestoreJson.h"
#include "host/operations/StopSignals.h"
#include "host/transfer/DeviceRestore.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

std::string listOf(const std::vector<Backup>& backups)
{
    if (backups.empty())
        return "There is no backup of this device.\n";
    Table table{{{"Backup"}, {"Files", Table::Align::kRight}, {"Bytes", Table::Align::kRight}}};
    for (const auto& backup : backups)
        table.add({backup.name, std::to_string(backup.files), std::to_string(backup.bytes)});
    return table.text();
}

// A name in the list is found before a folder of that name in the current folder.
// @param requested  the name of a listed backup, or the path of any backup
std::string pathOf(const std::string& requested, const std::vector<Backup>& backups)
{
    const auto found = std::find_if(backups.begin(), backups.end(),
                                    [&](const Backup& backup) { return backup.name == requested; });
    return found != backups.end() ? found->path : requested;
}

std::string textOf(const RestoreReport& report)
{
    std::string text;
    if (report.wasUpToDate)
        text = "The device already holds what the backup holds.\n";
    if (report.previous)
        text += fmt::format("The files before the restore are kept in the backup {}\n",
                            report.previous->name);
    for (const auto& name : report.deletedBackups)
        text +=
            fmt::format("deleted, because enough newer backups are kept: {}\n", displayText(name));
    for (const auto& path : report.restored)
        text += fmt::format("restored: {}\n", displayText(path));
    for (const auto& path : report.extraFiles)
        text += fmt::format("not in the backup, left as it is: {}\n", displayText(path));
    return text;
}

std::vector<Message> restoreMessages(const RestoreReport& report)
{
    std::vector<Message> messages;
    if (report.error)
        messages.push_back({true, sentencesOf(*report.error)});
    const bool isAnyWritten = !report.restored.empty();
    if (report.wasStopped)
        messages.push_back({true, isAnyWritten
                                      ? "The restore was stopped. Restore again to write the rest."
                                      : stoppedEarlyText("restore")});
    if (isAnyWritten && !report.asBefore.empty())
        messages.push_back(
            {true, fmt::format("As before the restore: {}.", joined(report.asBefore, ", "))});
    return messages;
}

gps::Error noDeviceWithFiles(const ChosenDevice& chosen)
{
    return hostError(fmt::format("The driver {} has no device that can be backed up",
                                 driverName(*chosen.driver)),
                     "Connect a receiver that mounts as a disk, or name its location with "
                     "--device");
}

ExitStatus restore(const RestoreOptions& options, const DataFolders& device, RestoreRequest request,
                   StopSignals& stop, const Console& console)
{
    const ProgressLine progress{canShowProgress(options, false)};
    request.progress = progress.callback();
    request.beforeWriting = [&stop] { stop.requestOnly(); };
    request.stopRequested = [&stop] { return stop.stopRequested(); };
    const auto report = restoreBackup(device, request);
    stop.requestOnly(); // the result is known, and would be printed twice
    auto status = report.isComplete() ? ExitStatus::kSuccess : ExitStatus::kFailed;
    if (report.wasStopped)
        status = statusAfterSignal(stop.signal());
    const auto messages = restoreMessages(report);
    const auto text = options.json
                          ? restoreJson(device.device, request.backup, report, messages, status)
                          : textOf(report);
    if (options.json) // nothing can fail after the document, and make a second one
        console.messages(messages);
    const auto printed = print(text, console);
    if (!options.json)
        console.messages(messages);
    return report.isComplete() ? printed : status;
}

} // namespace

ExitStatus runRestore(const PlugInBundle& plugIn, const RestoreOptions& options,
                      const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    ChosenDevice chosen;
    if (const auto failure = chooseDevice(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    const auto device = dataFoldersOf(chosen);
    if (!device)
        return refuse(options, noDeviceWithFiles(chosen), ExitStatus::kNothingToWorkOn, stop,
                      console);
    const auto folder = options.backupFolder ? options.backupFolder : defaultBackupFolder();
    if (!folder)
        return refuse(
            options,
            hostError("There is no home folder for backups", "Name a folder with --backup"),
            ExitStatus::kFailed, stop, console);
    const auto backups = listBackups(*folder, device->identifier);
    if (options.backup)
        return restore(options, *device,
                       {.backup = pathOf(*options.backup, backups),
                        .policy = {.folder = *folder, .count = options.mostBackups},
                        .isForced = options.force},
                       stop, console);
    stop.requestOnly(); // the list is known, and would be printed twice
    return print(options.json ? backupListJson(device->device, backups) : listOf(backups), console);
}

} // namespace host
