// SPDX-License-Identifier: MIT
// `restore`: without an argument a list of backups, with one a restore.

#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/Table.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DiskRelease.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/RestoreJson.h"
#include "host/desktop/DeviceDisk.h"
#include "host/desktop/UDisks.h"
#include "host/operations/StopSignals.h"
#include "host/transfer/DeviceRestore.h"
#include "host/words/RestoreText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

// The backups of a device.
struct BackupList {
    std::vector<Backup> complete;
    std::vector<DamagedBackup> damaged;
};

std::string tableOf(const std::vector<Backup>& backups)
{
    Table table{{{"Backup"}, {"Files", Table::Align::kRight}, {"Bytes", Table::Align::kRight}}};
    for (const auto& backup : backups)
        table.add({backup.name, std::to_string(backup.files), std::to_string(backup.bytes)});
    return table.text();
}

std::string listOf(const BackupList& backups)
{
    auto text = backups.complete.empty() ? "There is no backup of this device.\n"
                                         : tableOf(backups.complete);
    for (const auto& damaged : backups.damaged)
        text += damagedBackupText(damaged) + '\n';
    return text;
}

// A name in the list is found before a folder of that name in the current folder.
// @param requested  the name of a listed backup, or the path of any backup
// @return           nullopt if there is neither
std::optional<std::string> pathOf(const std::string& requested, const BackupList& backups)
{
    const auto isRequested = [&](const auto& backup) { return backup.name == requested; };
    const auto& complete = backups.complete;
    const auto found = std::find_if(complete.begin(), complete.end(), isRequested);
    if (found != complete.end())
        return found->path;
    const auto& damaged = backups.damaged; // the restore says what is wrong with it
    const auto other = std::find_if(damaged.begin(), damaged.end(), isRequested);
    if (other != damaged.end())
        return other->path;
    std::error_code ignored;
    return std::filesystem::exists(requested, ignored) ? std::optional{requested} : std::nullopt;
}

std::size_t commonLength(const std::string& a, const std::string& b)
{
    const auto end = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
    return static_cast<std::size_t>(end - a.begin());
}

gps::Error noSuchBackup(const std::string& requested, std::vector<Backup> backups)
{
    constexpr std::size_t kMostNamed = 3;
    // Stable: among equally near ones, the newest come first, as in the list.
    std::stable_sort(backups.begin(), backups.end(), [&](const Backup& a, const Backup& b) {
        return commonLength(a.name, requested) > commonLength(b.name, requested);
    });
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(backups.size(), kMostNamed); ++i)
        names.push_back(backups[i].name);
    return hostError(fmt::format("There is no backup \"{}\" of this device", requested),
                     names.empty()
                         ? "The device has no backups: a send makes one before it writes"
                         : fmt::format("{}: {}; \"magellangps restore\" lists all of them",
                                       names.size() == 1 ? "The nearest is" : "The nearest are",
                                       joined(names, ", ")));
}

std::string textOf(const RestoreReport& report)
{
    std::string text;
    for (const auto& line : restoreLines(report))
        text += line + '\n';
    return text;
}

gps::Error noDeviceWithFiles(const ChosenDevice& chosen)
{
    return hostError(fmt::format("The driver {} has no device that can be backed up",
                                 driverName(*chosen.driver)),
                     "Connect a receiver that mounts as a disk, or name its location with "
                     "--device");
}

ExitStatus restore(const RestoreOptions& options, const DataFolders& device, RestoreRequest request,
                   DeviceDisk& disk, StopSignals& stop, const Console& console)
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
    auto messages = restoreMessages(report);
    for (auto& message : releaseDisk(disk, status == ExitStatus::kSuccess)) {
        if (message.isError && status == ExitStatus::kSuccess)
            status = ExitStatus::kFailed;
        messages.push_back(std::move(message));
    }
    const auto text = options.json
                          ? restoreJson(device.device, request.backup, report, messages, status)
                          : textOf(report);
    if (options.json) // nothing can fail after the document, and make a second one
        console.messages(messages);
    const auto printed = print(text, console);
    if (!options.json)
        console.messages(messages);
    return status == ExitStatus::kSuccess ? printed : status;
}

} // namespace

ExitStatus runRestore(const PlugInBundle& plugIn, const RestoreOptions& options,
                      const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    UDisks disks;
    DeviceDisk disk{options.disk, disks};
    ChosenDevice chosen;
    if (const auto failure = disk.choose(
            plugIn.drivers, {options.driver, options.device, options.testFolders, true}, chosen))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    if (disk.hasMounted())
        stop.requestOnly(); // it must be unmounted at every end
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
    const BackupList backups{listBackups(*folder, device->identifier),
                             listDamagedBackups(*folder, device->identifier)};
    const auto path = options.backup ? pathOf(*options.backup, backups) : std::nullopt;
    if (options.backup && !path)
        return refuse(options, noSuchBackup(*options.backup, backups.complete), ExitStatus::kFailed,
                      stop, console);
    if (path)
        return restore(options, *device,
                       {.backup = *path,
                        .policy = {.folder = *folder, .count = options.mostBackups},
                        .isForced = options.force},
                       disk, stop, console);
    stop.requestOnly(); // the list is known, and would be printed twice
    return print(options.json ? backupListJson(device->device, backups.complete, backups.damaged)
                              : listOf(backups),
                 console);
}

} // namespace host
