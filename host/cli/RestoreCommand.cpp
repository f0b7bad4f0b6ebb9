// SPDX-License-Identifier: MIT

#include "host/backup/Backup.h"
#include "host/backup/Restore.h"
#include "host/base/HostError.h"
#include "host/base/Table.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/Progress.h"
#include "host/operations/Operation.h"

#include <gps/GPSFileDevice.h>

#include <algorithm>

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

// A listed backup's name, or any backup's folder.
std::string pathOf(const std::string& wanted, const std::vector<Backup>& backups)
{
    const auto found = std::find_if(backups.begin(), backups.end(),
                                    [&](const Backup& backup) { return backup.name == wanted; });
    return found != backups.end() ? found->path : wanted;
}

// Puts the protected backup back, and keeps what was there.
std::optional<gps::Error> putBack(const BackupPolicy& policy, const DataFolders& device,
                                  std::string& report)
{
    Restore restore;
    if (auto failure = restore.open(policy.protectedPath))
        return failure;
    std::optional<gps::Error> failure;
    if (restore.matches(
            device.device)) { // one more backup would push an older one out, for nothing
        report = "The device holds what the backup holds.\n";
    } else {
        Backup made;
        std::vector<std::string> skipped;
        if (auto refusal = makeBackup(policy, device, made, skipped))
            return refusal;
        report = "The state before is kept in the backup " + made.name + '\n';
        std::vector<std::string> written;
        failure = restore.write(device.device, written);
        for (const auto& path : written)
            report += "restored: " + displayText(path) + '\n';
    }
    for (const auto& path : restore.extraFiles(device.device))
        report += "left, not in the backup: " + displayText(path) + '\n';
    return failure;
}

} // namespace

ExitStatus runRestore(const PlugInBundle& plugIn, const RestoreOptions& options,
                      const Console& console)
{
    ChosenDevice chosen;
    if (const auto failure = chooseDevice(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    const auto& driver = chosen.driver;
    const auto* const device =
        canSend(*driver) ? dynamic_cast<const gps::GPSFileDevice*>(driver.get()) : nullptr;
    const DataFolders folders{
        chosen.location, device != nullptr ? device->deviceIdentifier().value_or("") : "",
        device != nullptr ? device->dataFolders() : std::vector<std::string>{}};
    if (device == nullptr || folders.device.empty()) {
        console.error("The driver " + driverName(*driver) +
                      " has no device that backups are kept of. Connect a receiver that mounts as "
                      "a disk, or name its place with "
                      "--device.");
        return ExitStatus::kNothingToWorkOn;
    }
    const auto folder = options.backupFolder ? options.backupFolder : defaultBackupFolder();
    if (!folder) {
        console.error("There is no home that backups could be in. Name a folder with --backup.");
        return ExitStatus::kFailed;
    }
    const auto backups = listBackups(*folder, folders.identifier);
    if (!options.backup)
        return print(listOf(backups), console);
    std::string report;
    Progress progress{wantsProgress(options, false)};
    progress.begin("restoring");
    const auto failure =
        putBack({*folder, options.mostBackups, pathOf(*options.backup, backups)}, folders, report);
    progress.clear();
    const auto printed = print(report, console);
    if (!failure)
        return printed;
    console.error(*failure);
    return ExitStatus::kFailed;
}

} // namespace host
