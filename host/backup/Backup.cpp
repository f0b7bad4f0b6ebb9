// SPDX-License-Identifier: MIT

#include "host/backup/Backup.h"

#include "host/backup/Manifest.h"
#include "host/base/HostError.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"
#include "host/files/StateFolder.h"

#include <gps/NumberText.h>
#include <platform/System/FileManager.h>
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
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kUnfinished[] =
    ".unfinished"; // one a device: what a killed run leaves, the next one sweeps up

// Keeps others from making a backup of the same device meanwhile.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder)
        : file_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {}
    ~FolderLock()
    {
        if (file_ >= 0)
            ::close(file_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // A file system without locks lets everybody in.
    [[nodiscard]] bool isRefused() const
    {
        return ::flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }

private:
    int file_;
};

std::string deviceFolder(const std::string& folder, std::string_view identifier)
{
    return gps::joinPath(folder, nameOfDevice(identifier));
}

// What backups are sorted by: the time, and the number behind it.
std::pair<std::string, std::int64_t> orderOf(const std::string& name)
{
    const auto hyphen = name.find('-');
    if (hyphen == std::string::npos)
        return {name, 0};
    return {name.substr(0, hyphen), gps::wholeUnsigned(name.substr(hyphen + 1)).value_or(0)};
}

// Behind every other name of this second: one that was free because its backup is gone would count
// as older.
std::string newPath(const std::string& folder)
{
    const auto time = nameOfNow();
    std::int64_t number = -1;
    std::error_code error;
    for (fs::directory_iterator at{folder, error}, end; !error && at != end; at.increment(error)) {
        const auto [otherTime, otherNumber] = orderOf(at->path().filename().string());
        if (otherTime == time)
            number = std::max(number, otherNumber);
    }
    return gps::joinPath(folder, number < 0 ? time : time + '-' + std::to_string(number + 1));
}

// Copies one file and reads the copy back.
std::optional<gps::Error> copyFile(const std::string& from, const std::string& to,
                                   BackedUpFile& file)
{
    std::string bytes;
    if (auto failure = gps::FileManager{}.readFile(from, bytes))
        return failure;
    if (auto failure = writeFile(to, bytes))
        return failure;
    std::string copy;
    if (auto failure = gps::FileManager{}.readFile(to, copy))
        return failure;
    if (copy != bytes)
        return hostError("A copy differs from its file", "Check the disk that keeps the backups",
                         to);
    file.size = bytes.size();
    file.hash = hashOf(bytes);
    return std::nullopt;
}

// One copying of data folders into a folder that is not yet a backup.
struct Copying {
    const std::string& device;
    std::string to;
    Manifest manifest;
    std::vector<std::string>& skipped;

    std::optional<gps::Error> copyFolder(const std::string& folder);
    std::optional<gps::Error> copyEntry(const gps::FolderEntry& entry, const std::string& folder,
                                        const std::string& relative);
};

std::optional<gps::Error> Copying::copyFolder(const std::string& folder)
{
    const auto relative = fs::path{folder}.lexically_relative(device).string();
    if (!gps::staysInside(relative))
        return hostError("A data folder does not lie on the device",
                         "Send with --no-backup, and keep a copy yourself", folder);
    manifest.folders.push_back(relative);
    if (auto failure = makeFolders(gps::joinPath(to, relative)))
        return failure;
    auto entries = gps::FileManager{}.enumerator(folder);
    while (const auto entry = entries.next()) {
        if (auto failure = copyEntry(*entry, folder, relative))
            return failure;
    }
    return std::nullopt;
}

std::optional<gps::Error> Copying::copyEntry(const gps::FolderEntry& entry,
                                             const std::string& folder, const std::string& relative)
{
    BackedUpFile file{.path = gps::joinPath(relative, entry.relativePath), .hash = {}};
    if (entry.isFolder)
        return makeFolders(gps::joinPath(to, file.path));
    const auto from = gps::joinPath(folder, entry.relativePath);
    std::error_code ignored;
    if (!fs::is_regular_file(from, ignored)) {
        skipped.push_back(from);
        return std::nullopt;
    }
    if (auto failure = copyFile(from, gps::joinPath(to, file.path), file))
        return failure;
    manifest.files.push_back(std::move(file));
    return std::nullopt;
}

std::optional<gps::Error> fill(const std::string& unfinished, const DataFolders& source,
                               std::vector<std::string>& skipped)
{
    Copying copying{
        source.device, gps::joinPath(unfinished, kFilesName), {source.device, {}}, skipped};
    if (auto failure = makeFolders(copying.to))
        return failure;
    for (const auto& folder : source.folders) {
        if (auto failure = copying.copyFolder(folder))
            return failure;
    }
    return writeFile(gps::joinPath(unfinished, kManifestName), manifestText(copying.manifest));
}

std::optional<gps::Error> giveName(const std::string& unfinished, const std::string& path)
{
    if (::rename(unfinished.c_str(), path.c_str()) != 0)
        return systemError("The backup cannot be given its name",
                           "Choose another place with --backup", path, errno);
    flushFolder(fs::path{path}.parent_path().string());
    return std::nullopt;
}

Backup described(const std::string& path)
{
    Backup backup{.path = path, .name = fs::path{path}.filename().string()};
    Manifest manifest;
    (void)readManifest(path, manifest);
    backup.files = manifest.files.size();
    for (const auto& file : manifest.files)
        backup.bytes += file.size;
    return backup;
}

void prune(const Keeping& keeping, const std::string& identifier)
{
    std::size_t kept = 0;
    for (const auto& backup : listBackups(keeping.folder, identifier)) {
        std::error_code ignored;
        const bool isSpared =
            !keeping.spared.empty() && fs::equivalent(backup.path, keeping.spared, ignored);
        if (kept++ < keeping.most || isSpared)
            continue;
        // Renamed first, so that a run killed here leaves none that looks whole.
        const auto unfinished =
            gps::joinPath(fs::path{backup.path}.parent_path().string(), kUnfinished);
        if (::rename(backup.path.c_str(), unfinished.c_str()) == 0)
            (void)gps::FileManager{}.removeItem(unfinished);
    }
}

bool liesInside(const std::string& path, const std::vector<std::string>& folders)
{
    std::error_code ignored;
    const auto real = fs::weakly_canonical(path, ignored);
    return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
        const auto way = real.lexically_relative(fs::weakly_canonical(folder, ignored)).string();
        return gps::staysInside(way);
    });
}

} // namespace

std::optional<std::string> usualBackupFolder()
{
    const auto state = stateFolder();
    return state ? std::optional{gps::joinPath(*state, "backups")} : std::nullopt;
}

std::optional<gps::Error> makeBackup(const Keeping& keeping, const DataFolders& source,
                                     Backup& made, std::vector<std::string>& skipped)
{
    const auto mine = deviceFolder(keeping.folder, source.identifier);
    if (liesInside(keeping.folder, source.folders))
        return hostError("The backups would lie among the files that they copy",
                         "Choose another place with --backup", keeping.folder);
    if (auto failure = makeFolders(mine))
        return failure;
    const FolderLock lock{mine};
    if (lock.isRefused())
        return hostError("Another backup of this device is being made",
                         "Wait for its end, and try again", mine);

    const auto unfinished = gps::joinPath(mine, kUnfinished);
    (void)gps::FileManager{}.removeItem(unfinished);
    const auto path = newPath(mine);
    auto failure = fill(unfinished, source, skipped);
    if (!failure)
        failure = giveName(unfinished, path);
    if (failure) {
        (void)gps::FileManager{}.removeItem(unfinished);
        return failure;
    }
    made = described(path);
    prune(keeping, source.identifier);
    return std::nullopt;
}

std::vector<Backup> listBackups(const std::string& folder, const std::string& identifier)
{
    std::vector<Backup> backups;
    std::error_code error;
    for (fs::directory_iterator at{deviceFolder(folder, identifier), error}, end;
         !error && at != end; at.increment(error)) {
        Manifest manifest;
        if (at->path().filename() != kUnfinished && !readManifest(at->path().string(), manifest))
            backups.push_back(described(at->path().string()));
    }
    std::sort(backups.begin(), backups.end(),
              [](const Backup& a, const Backup& b) { return orderOf(a.name) > orderOf(b.name); });
    return backups;
}

} // namespace host
