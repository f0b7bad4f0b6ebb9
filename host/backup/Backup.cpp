// SPDX-License-Identifier: MIT
// A backup is filled under a hidden name, and renamed when it is complete. Whatever fails before
// that leaves the older backups as they are.

#include "host/backup/Backup.h"

#include "host/backup/BackupCopier.h"
#include "host/backup/Manifest.h"
#include "host/base/HostError.h"
#include "host/files/Files.h"
#include "host/files/StateFolder.h"

#include <gps/NumberText.h>
#include <platform/System/FileManager.h>
#include <platform/System/OpenFile.h>
#include <platform/System/Paths.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// One name for each device, so that the next run removes what a killed one left.
constexpr char kUnfinished[] = ".unfinished";

// Keeps other processes from making a backup of the same device at the same time.
class FolderLock {
public:
    FolderLock(gps::FileSystem& files, const std::string& folder)
        : files_(files), file_(files, files.open(folder.c_str(), O_RDONLY | O_DIRECTORY, 0))
    {}

    // False if the file system has no locks: better an unlocked backup than none.
    [[nodiscard]] bool isHeldByAnother() const
    {
        return files_.flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }

private:
    gps::FileSystem& files_;
    gps::OpenFile file_;
};

std::string deviceFolder(const std::string& folder, std::string_view identifier)
{
    return gps::joinPath(folder, nameOfDevice(identifier));
}

// The names in a folder, without those inside its folders.
std::vector<std::string> namesIn(const std::string& folder, gps::FileSystem& files)
{
    std::vector<std::string> names;
    auto entries = gps::FileManager{&files}.enumerator(folder);
    while (const auto entry = entries.next()) {
        names.push_back(entry->relativePath);
        entries.skipDescendants();
    }
    return names;
}

// The order of backups by age: the time, then the number after it.
std::pair<std::string, std::int64_t> orderOf(const std::string& name)
{
    const auto hyphen = name.find('-');
    if (hyphen == std::string::npos)
        return {name, 0};
    return {name.substr(0, hyphen),
            gps::wholeUnsigned(std::string_view{name}.substr(hyphen + 1)).value_or(0)};
}

// A name that sorts after all others of this second. A lower number, free because its backup was
// deleted, would make the new backup look older than it is.
std::string newName(const std::string& folder, gps::FileSystem& files)
{
    const auto time = nameOfNow();
    std::int64_t last = -1;
    for (const auto& name : namesIn(folder, files)) {
        const auto [otherTime, number] = orderOf(name);
        if (otherTime == time)
            last = std::max(last, number);
    }
    return last < 0 ? time : time + '-' + std::to_string(last + 1);
}

Backup describe(const std::string& path, const std::string& name, const Manifest& manifest)
{
    Backup backup{.path = path, .name = name, .files = manifest.files.size()};
    for (const auto& file : manifest.files)
        backup.bytes += file.size;
    return backup;
}

bool isSame(const std::string& a, const std::string& b, gps::FileSystem& files)
{
    struct stat first;
    struct stat second;
    return files.stat(a.c_str(), &first) == 0 && files.stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

void deleteOldest(const BackupPolicy& policy, const std::string& identifier, gps::FileSystem& files)
{
    const auto folder = deviceFolder(policy.folder, identifier);
    std::size_t kept = 0;
    for (const auto& backup : listBackups(policy.folder, identifier, files)) {
        const bool isProtected =
            !policy.protectedPath.empty() && isSame(backup.path, policy.protectedPath, files);
        if (kept++ < policy.count || isProtected)
            continue;
        // Renamed first, so that a run killed here does not leave a damaged backup in the list.
        if (renameInFolder(files, folder, backup.name, kUnfinished) == 0)
            (void)gps::FileManager{&files}.removeItem(gps::joinPath(folder, kUnfinished));
    }
}

bool isInsideAny(const std::string& path, const std::vector<std::string>& folders)
{
    std::error_code ignored;
    const auto real = fs::weakly_canonical(path, ignored);
    return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
        const auto way = real.lexically_relative(fs::weakly_canonical(folder, ignored)).string();
        return gps::staysInside(way);
    });
}

// Fills the backup and gives it its name.
std::optional<gps::Error> create(const DataFolders& source, const std::string& folder,
                                 const std::string& name, std::vector<std::string>& skipped,
                                 gps::FileSystem& files)
{
    const auto unfinished = gps::joinPath(folder, kUnfinished);
    (void)gps::FileManager{&files}.removeItem(unfinished);
    Manifest manifest;
    auto failure = BackupCopier{source, unfinished, skipped, files}.copyAll(manifest);
    if (!failure)
        failure = writeManifest(unfinished, manifest, files);
    if (!failure) {
        if (const int code = renameInFolder(files, folder, kUnfinished, name))
            failure = systemError("The backup cannot be given its name",
                                  "Choose another folder with --backup",
                                  gps::joinPath(folder, name), code);
    }
    if (failure)
        (void)gps::FileManager{&files}.removeItem(unfinished);
    return failure;
}

} // namespace

std::optional<std::string> defaultBackupFolder()
{
    const auto state = stateFolder();
    return state ? std::optional{gps::joinPath(*state, "backups")} : std::nullopt;
}

std::optional<gps::Error> makeBackup(const BackupPolicy& policy, const DataFolders& source,
                                     Backup& made, std::vector<std::string>& skipped,
                                     gps::FileSystem& files)
{
    const auto folder = deviceFolder(policy.folder, source.identifier);
    if (isInsideAny(policy.folder, source.folders))
        return hostError("The backup would be inside a folder that it copies",
                         "Choose another folder with --backup", policy.folder);
    if (auto failure = makeFolders(folder, files))
        return failure;
    const FolderLock lock{files, folder};
    if (lock.isHeldByAnother())
        return hostError("Another program is making a backup of this device",
                         "Wait until it has finished, and try again", folder);

    const auto name = newName(folder, files);
    const auto path = gps::joinPath(folder, name);
    if (auto failure = create(source, folder, name, skipped, files))
        return failure;
    Manifest manifest;
    if (auto failure = readManifest(path, manifest, files))
        return failure;
    made = describe(path, name, manifest);
    deleteOldest(policy, source.identifier, files);
    return std::nullopt;
}

std::vector<Backup> listBackups(const std::string& folder, const std::string& identifier,
                                gps::FileSystem& files)
{
    std::vector<Backup> backups;
    const auto parent = deviceFolder(folder, identifier);
    for (const auto& name : namesIn(parent, files)) {
        const auto path = gps::joinPath(parent, name);
        Manifest manifest;
        if (name != kUnfinished && !readManifest(path, manifest, files))
            backups.push_back(describe(path, name, manifest));
    }
    std::sort(backups.begin(), backups.end(),
              [](const Backup& a, const Backup& b) { return orderOf(a.name) > orderOf(b.name); });
    return backups;
}

} // namespace host
