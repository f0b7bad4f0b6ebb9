// SPDX-License-Identifier: MIT
// The same checks as those before a restore, so that what is announced can also be done.

#include "host/transfer/BackupComparison.h"

#include "host/backup/Manifest.h"
#include "host/backup/Restore.h"
#include "host/transfer/DeviceRestore.h"

#include <platform/System/FileManager.h>

#include <string_view>
#include <utility>

namespace host {
namespace {

RecordCounts recordsIn(const std::string& path, const gps::GPSFileDevice& decoder, bool& isThere)
{
    RecordCounts counts;
    std::string content;
    isThere = !gps::FileManager{}.readFile(path, content);
    if (isThere)
        decoder.visitRecordsIn(path, content,
                               [&](std::string_view key, const gps::Dictionary& record) {
                                   countRecord(key, record, counts);
                               });
    return counts;
}

} // namespace

BackupComparison compareBackup(const DataFolders& device, const std::string& backup,
                               const gps::GPSFileDevice& decoder)
{
    BackupComparison comparison;
    Restore restore;
    comparison.error = checkRestore(device, backup, false, restore);
    if (comparison.error)
        return comparison;
    for (auto& path : restore.changedFiles(device.device)) {
        RestoredFile file{.path = std::move(path)};
        file.now = recordsIn(gps::joinPath(device.device, file.path), decoder, file.isOnDevice);
        bool isThere = false; // it was just read
        file.then = recordsIn(gps::joinPath(gps::joinPath(backup, kFilesName), file.path), decoder,
                              isThere);
        comparison.files.push_back(std::move(file));
    }
    comparison.unchangedFiles = restore.files().size() - comparison.files.size();
    comparison.extraFiles = restore.extraFiles(device.device);
    return comparison;
}

} // namespace host
