// SPDX-License-Identifier: MIT
// Anything that cannot be listed, looked at or read stops the copy: a backup that lacks a file
// would count as complete.

#include "host/backup/BackupCopier.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"
#include "host/files/TemporaryName.h"

#include <platform/System/FileManager.h>
#include <platform/System/Paths.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include <sys/stat.h>

namespace host {

BackupCopier::BackupCopier(const DataFolders& source, std::string folder,
                           std::vector<std::string>& skipped, gps::FileSystem& files)
    : source_(source), folder_(std::move(folder)), skipped_(skipped), files_(files)
{
    if (source.known == nullptr)
        return;
    for (const auto& file : *source.known)
        known_.emplace(file.path, &file);
}

std::optional<gps::Error> BackupCopier::copyAll(Manifest& manifest)
{
    manifest_ = {.device = source_.device, .folders = {}};
    if (auto failure = makeFolders(target({}), files_))
        return failure;
    for (const auto& folder : source_.folders) {
        if (auto failure = copyFolder(folder))
            return failure;
    }
    manifest = std::move(manifest_);
    return std::nullopt;
}

std::optional<gps::Error> BackupCopier::copyFolder(const std::string& folder)
{
    const auto relative = std::filesystem::path{folder}.lexically_relative(source_.device).string();
    if (!gps::staysInside(relative))
        return noBackupPossible(tr("A data folder is not on the device"), folder);
    manifest_.folders.push_back(relative);
    if (auto failure = makeFolders(target(relative), files_))
        return failure;
    auto entries = gps::FileManager{&files_}.enumerator(folder);
    while (const auto entry = entries.next()) {
        if (source_.stopRequested && source_.stopRequested())
            return hostError(tr("The backup was stopped"), tr("Try again"), folder);
        if (auto failure = copyEntry(*entry, folder, relative))
            return failure;
    }
    // Files that were not listed would be missing in the backup, and nobody would know. A folder
    // that does not exist lists as empty, but this one was there before.
    struct stat status;
    int failure = entries.failure();
    if (failure == 0 && files_.stat(folder.c_str(), &status) != 0)
        failure = errno;
    if (failure != 0)
        return systemError(tr("A data folder cannot be read"),
                           tr("Check the receiver, and try again"), folder, failure);
    return std::nullopt;
}

std::optional<gps::Error> BackupCopier::copyEntry(const gps::FolderEntry& entry,
                                                  const std::string& folder,
                                                  const std::string& relative)
{
    BackedUpFile file{.path = gps::joinPath(relative, entry.relativePath), .hash = {}};
    if (entry.isFolder)
        return makeFolders(target(file.path), files_);
    // Not data: the next write in that folder deletes it, on the device and in the backup.
    if (isTemporaryName(gps::lastComponent(file.path)))
        return std::nullopt;
    const auto from = gps::joinPath(folder, entry.relativePath);
    struct stat status;
    const int code = files_.stat(from.c_str(), &status) == 0 ? 0 : errno;
    // A link that leads nowhere has nothing to copy. Any other entry that is not found was on a
    // medium that has been pulled out since the folder was listed.
    const bool leadsNowhere = (code == ENOENT || code == ELOOP) && isLink(from);
    if (code != 0 && !leadsNowhere)
        return systemError(tr("A file cannot be read"), tr("Check the receiver, and try again"),
                           from, code);
    if (code != 0 || !S_ISREG(status.st_mode)) {
        skipped_.push_back(from);
        return std::nullopt;
    }
    if (auto failure = copyFile(from, target(file.path), file))
        return failure;
    manifest_.files.push_back(std::move(file));
    return std::nullopt;
}

bool BackupCopier::isLink(const std::string& path) const
{
    struct stat status;
    return files_.lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

std::optional<gps::Error> BackupCopier::copyFile(const std::string& from, const std::string& to,
                                                 BackedUpFile& file)
{
    const gps::FileManager manager{&files_};
    gps::SharedText content;
    if (auto failure = read(from, content))
        return failure;
    const std::string_view bytes = content;
    if (auto failure = writeFile(to, bytes, files_))
        return failure;
    std::string copy;
    if (auto failure = manager.readFile(to, copy))
        return failure;
    if (copy != bytes)
        return hostError(tr("A copy differs from its file"),
                         tr("Check the disk that keeps the backups"), to);
    file.size = bytes.size();
    file.hash = hashOf(bytes);
    return std::nullopt;
}

std::string BackupCopier::target(const std::string& relative) const
{
    return gps::joinPath(gps::joinPath(folder_, kFilesName), relative);
}

std::optional<gps::Error> BackupCopier::read(const std::string& path,
                                             gps::SharedText& content) const
{
    const auto found = known_.find(path);
    // A file that is not text has an error, too, but also its content.
    if (found != known_.end() && (!found->second->error || found->second->content != "")) {
        content = found->second->content;
        return std::nullopt;
    }
    std::string bytes;
    auto failure = gps::FileManager{&files_}.readFile(path, bytes);
    content = std::move(bytes);
    return failure;
}

} // namespace host
