// SPDX-License-Identifier: MIT
// A backup is filled under a hidden name, and renamed when it is complete. Whatever fails before
// that leaves the older backups as they are.

#include "host/backup/Backup.h"

#include "host/backup/BackupCopier.h"
#include "host/backup/Manifest.h"
#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/files/Files.h"
#include "host/files/FolderLock.h"
#include "host/files/StateFolder.h"

#include <gps/NumberText.h>
#include <platform/System/FileManager.h>
#include <platform/System/Paths.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

std::string folderAdvice()
{
    return advice("Choose another folder with --backup",
                  tr("Make room in your home folder, and try again"));
}

constexpr std::size_t kDayLength = sizeof "YYYYMMDD" - 1;

std::string today()
{
    return nameOfNow().substr(0, kDayLength);
}

// One name for each device, so that the next run removes what a killed one left.
constexpr char kUnfinished[] = ".unfinished";

std::string deviceFolder(const std::string& folder, std::string_view identifier)
{
    return gps::joinPath(folder, nameOfDevice(identifier));
}

// The names in a folder, without those inside its folders.
// @return  why the folder cannot be listed to its end
std::optional<gps::Error> readNames(const std::string& folder, std::vector<std::string>& names,
                                    gps::FileSystem& files)
{
    auto entries = gps::FileManager{&files}.enumerator(folder);
    while (const auto entry = entries.next()) {
        names.push_back(entry->relativePath);
        entries.skipDescendants();
    }
    if (const int code = entries.failure())
        return systemError(tr("The folder of the backups cannot be read"), folderAdvice(), folder,
                           code);
    return std::nullopt;
}

// A backup's name in two parts: the time, and the number after it.
std::pair<std::string, std::int64_t> partsOf(const std::string& name)
{
    const auto hyphen = name.find('-');
    if (hyphen == std::string::npos)
        return {name, 0};
    return {name.substr(0, hyphen),
            gps::wholeUnsigned(std::string_view{name}.substr(hyphen + 1)).value_or(0)};
}

// Whether newName() may have made this name.
bool isBackupName(const std::string& name)
{
    const auto time = std::string_view{name}.substr(0, name.find('-'));
    return time.size() == sizeof "YYYYMMDDTHHMMSSZ" - 1 && time[kDayLength] == 'T' &&
           time.back() == 'Z' && gps::wholeUnsigned(time.substr(0, kDayLength)) &&
           gps::wholeUnsigned(time.substr(kDayLength + 1, sizeof "HHMMSS" - 1));
}

// The clock can be wrong, and be set back. So the sequence counts, and names decide only between
// backups of older versions, which have none.
bool isNewer(const Backup& a, const Backup& b)
{
    return std::pair{a.sequence, partsOf(a.name)} > std::pair{b.sequence, partsOf(b.name)};
}

// A name that sorts after all others of this second, so that a list by name shows the order, too.
std::string newName(const std::vector<std::string>& names)
{
    const auto time = nameOfNow();
    std::int64_t last = -1;
    for (const auto& name : names) {
        const auto [otherTime, number] = partsOf(name);
        if (otherTime == time)
            last = std::max(last, number);
    }
    return last < 0 ? time : time + '-' + std::to_string(last + 1);
}

Backup describe(const std::string& path, const std::string& name, const Manifest& manifest)
{
    Backup backup{.path = path,
                  .name = name,
                  .files = manifest.files.size(),
                  .sequence = manifest.sequence,
                  .firstSequence =
                      manifest.firstSequence != 0 ? manifest.firstSequence : manifest.sequence,
                  .day = manifest.day.empty() ? name.substr(0, kDayLength) : manifest.day};
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

// @param backups  out: those whose manifests are good, the newest first
// @return         why it is not known whether one more of them is a backup
std::optional<gps::Error> readBackups(const std::string& folder,
                                      const std::vector<std::string>& names,
                                      std::vector<Backup>& backups, gps::FileSystem& files)
{
    std::optional<gps::Error> unknown;
    for (const auto& name : names) {
        if (name == kUnfinished)
            continue;
        const auto path = gps::joinPath(folder, name);
        Manifest manifest;
        const auto failure = readManifest(path, manifest, files);
        if (!failure)
            backups.push_back(describe(path, name, manifest));
        else if (mayBeReadLater(*failure))
            unknown = failure;
    }
    std::sort(backups.begin(), backups.end(), isNewer);
    return unknown;
}

// Its sequence may be the largest, and a new backup with the same one would not count as newer.
gps::Error unreadableBackup(const gps::Error& failure)
{
    return hostError(tr("An older backup cannot be read"),
                     tr("Try again. If it still cannot be read, move its folder away") +
                         advice(", or choose another folder with --backup", ""),
                     failure.path().value_or(""))
        .causedBy(failure);
}

// Renamed first, so that a run killed here does not leave a damaged backup in the list. A rename
// that fails only when it is flushed counts, because the entry has its new name by then.
// @return  whether the backup is gone
bool deleteBackup(const Backup& backup, const std::string& folder, gps::FileSystem& files)
{
    const bool isGone = renameInFolder(files, folder, backup.name, kUnfinished) == 0 ||
                        !gps::FileManager{&files}.fileExists(backup.path);
    if (isGone)
        (void)gps::FileManager{&files}.removeItem(gps::joinPath(folder, kUnfinished));
    return isGone;
}

bool wasFirst(const Backup& a, const Backup& b)
{
    return std::pair{a.firstSequence, partsOf(a.name)} <
           std::pair{b.firstSequence, partsOf(b.name)};
}

// The sequence of a backup at which the device was first in its state on a day.
std::uint64_t sequenceOn(const std::string& day, const Backup& backup)
{
    return backup.name.starts_with(day) ? backup.firstSequence : backup.sequence;
}

// The first backup of a device holds what nothing else does: its state before anything was written.
// The first of a day holds the state before a series of attempts.
std::set<std::string> namesToKeep(const std::vector<Backup>& backups, const std::string& today)
{
    std::set<std::string> names;
    const auto first = std::min_element(backups.begin(), backups.end(), wasFirst);
    if (first != backups.end())
        names.insert(first->name);
    const Backup* firstOfDay = nullptr;
    for (const auto& backup : backups) {
        // Of equal ones the last counts, which is the oldest.
        if (backup.day == today &&
            (firstOfDay == nullptr || sequenceOn(today, backup) <= sequenceOn(today, *firstOfDay)))
            firstOfDay = &backup;
    }
    if (firstOfDay != nullptr)
        names.insert(firstOfDay->name);
    return names;
}

// @param backups  all backups, the one just made among them, the newest first
void deleteOldest(const BackupPolicy& policy, const std::string& folder,
                  const std::vector<Backup>& backups, MadeBackup& made, gps::FileSystem& files)
{
    auto keep = namesToKeep(backups, today());
    keep.insert(made.backup.name);
    auto room = policy.count - std::min(policy.count, keep.size());
    for (const auto& backup : backups) {
        const bool isProtected =
            !policy.protectedPath.empty() && isSame(backup.path, policy.protectedPath, files);
        if (keep.contains(backup.name) || isProtected)
            continue;
        if (room > 0)
            --room;
        else if (deleteBackup(backup, folder, files))
            made.deleted.push_back(backup.name);
    }
}

// Quadratic in the number of files, unless a match comes early.
bool haveCommonFile(const Manifest& a, const Manifest& b)
{
    return std::any_of(a.files.begin(), a.files.end(), [&](const BackedUpFile& file) {
        return std::find(b.files.begin(), b.files.end(), file) != b.files.end();
    });
}

bool holdSameFiles(const std::string& a, const std::string& b,
                   const std::vector<BackedUpFile>& list, gps::FileSystem& files)
{
    const gps::FileManager manager{&files};
    return std::all_of(list.begin(), list.end(), [&](const BackedUpFile& file) {
        const auto path = gps::joinPath(kFilesName, file.path);
        std::string first;
        std::string second;
        return !manager.readFile(gps::joinPath(a, path), first) &&
               !manager.readFile(gps::joinPath(b, path), second) && first == second;
    });
}

// The newest backup that holds the same as the one in a folder; null if there is none. A damaged
// one holds something else.
const Backup* findEqual(const std::vector<Backup>& backups, const std::string& folder,
                        const Manifest& manifest, gps::FileSystem& files)
{
    const auto found = std::find_if(backups.begin(), backups.end(), [&](const Backup& backup) {
        Manifest other;
        return !readManifest(backup.path, other, files) && other.folders == manifest.folders &&
               other.files == manifest.files &&
               holdSameFiles(backup.path, folder, manifest.files, files);
    });
    return found != backups.end() ? &*found : nullptr;
}

// weakly_canonical(), because the folder for the backups need not exist yet.
bool isInsideAny(const std::string& path, const std::vector<std::string>& folders)
{
    std::error_code ignored;
    const auto real = fs::weakly_canonical(path, ignored);
    return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
        const auto way = real.lexically_relative(fs::weakly_canonical(folder, ignored)).string();
        return gps::staysInside(way);
    });
}

// Makes one backup in a device's folder, under an unfinished name at first.
class BackupMaker {
public:
    BackupMaker(std::string folder, MadeBackup& made, gps::FileSystem& files)
        : folder_(std::move(folder)), unfinished_(gps::joinPath(folder_, kUnfinished)), made_(made),
          files_(files)
    {}

    [[nodiscard]] std::optional<gps::Error> make(const DataFolders& source,
                                                 const BackupPolicy& policy);

private:
    [[nodiscard]] std::optional<gps::Error> fill(const DataFolders& source);
    [[nodiscard]] std::optional<gps::Error> finish(const std::string& name);
    [[nodiscard]] std::optional<gps::Error> giveName(const std::string& name);
    [[nodiscard]] bool isOfDevice(const Backup& backup) const;
    void removeUnfinished() { (void)gps::FileManager{&files_}.removeItem(unfinished_); }

    std::string folder_;
    std::string unfinished_;
    MadeBackup& made_;
    gps::FileSystem& files_;
    std::vector<Backup> backups_{}; // those of earlier runs, the newest first
    Manifest manifest_{};
};

std::optional<gps::Error> BackupMaker::make(const DataFolders& source, const BackupPolicy& policy)
{
    std::vector<std::string> names;
    if (auto failure = readNames(folder_, names, files_))
        return failure;
    if (const auto unknown = readBackups(folder_, names, backups_, files_))
        return unreadableBackup(*unknown);
    removeUnfinished();
    auto failure = fill(source);
    if (!failure)
        failure = finish(newName(names));
    removeUnfinished();
    if (failure)
        return failure;
    // A backup that was reused is inserted again below, as the newest.
    std::erase_if(backups_, [&](const Backup& backup) {
        return backup.name == made_.backup.name ||
               (source.identifier.empty() && !isOfDevice(backup));
    });
    backups_.insert(backups_.begin(), made_.backup);
    deleteOldest(policy, folder_, backups_, made_, files_);
    return std::nullopt;
}

// For a device without an identifier.
bool BackupMaker::isOfDevice(const Backup& backup) const
{
    Manifest manifest;
    return !readManifest(backup.path, manifest, files_) && haveCommonFile(manifest, manifest_);
}

std::optional<gps::Error> BackupMaker::fill(const DataFolders& source)
{
    if (auto failure = BackupCopier{source, unfinished_, made_.skipped, files_}.copyAll(manifest_))
        return failure;
    const auto newest = backups_.empty() ? 0 : backups_.front().sequence;
    manifest_.sequence = std::min(newest + 1, kLargestSequence);
    manifest_.firstSequence = manifest_.sequence;
    manifest_.day = today();
    if (!source.identifier.empty())
        manifest_.identifier = source.identifier;
    return writeManifest(unfinished_, manifest_, files_);
}

std::optional<gps::Error> BackupMaker::finish(const std::string& name)
{
    const auto* const equal = findEqual(backups_, unfinished_, manifest_, files_);
    made_.isNew = equal == nullptr;
    if (equal != nullptr)
        manifest_.firstSequence = equal->firstSequence;
    const auto finalName = equal != nullptr ? equal->name : name;
    const auto path = gps::joinPath(folder_, finalName);
    // The manifest of an equal backup is replaced by one with the new sequence.
    auto failure = equal != nullptr ? writeManifest(path, manifest_, files_) : giveName(name);
    if (failure)
        return failure;
    // Read back, so that a backup counts only if the list will show it.
    Manifest written;
    if (auto unreadable = readManifest(path, written, files_))
        return unreadable;
    made_.backup = describe(path, finalName, written);
    return std::nullopt;
}

std::optional<gps::Error> BackupMaker::giveName(const std::string& name)
{
    if (const int code = renameInFolder(files_, folder_, kUnfinished, name))
        return systemError(tr("The backup cannot be given its name"), folderAdvice(),
                           gps::joinPath(folder_, name), code);
    return std::nullopt;
}

} // namespace

std::optional<std::string> defaultBackupFolder()
{
    const auto state = stateFolder();
    return state ? std::optional{gps::joinPath(*state, "backups")} : std::nullopt;
}

std::optional<gps::Error> makeBackup(const BackupPolicy& policy, const DataFolders& source,
                                     MadeBackup& made, gps::FileSystem& files)
{
    if (source.failure)
        return source.failure;
    const auto folder = deviceFolder(policy.folder, source.identifier);
    if (isInsideAny(policy.folder, source.folders))
        return hostError(tr("The backup would be inside a folder that it copies"), folderAdvice(),
                         policy.folder);
    if (auto failure = makeFolders(folder, files))
        return failure;
    const FolderLock lock{folder, files};
    if (lock.isHeldByAnother())
        return hostError(tr("Another program is making a backup of this device"),
                         tr("Wait until it has finished, and try again"), folder);
    made = {};
    return BackupMaker{folder, made, files}.make(source, policy);
}

std::vector<std::string> listBackedUpDevices(const std::string& folder, gps::FileSystem& files)
{
    std::vector<std::string> names;
    (void)readNames(folder, names, files);
    std::erase_if(names, [&](const std::string& name) {
        bool isFolder = false;
        return nameOfDevice(name) != name ||
               !gps::FileManager{&files}.fileExists(gps::joinPath(folder, name), &isFolder) ||
               !isFolder;
    });
    return names;
}

std::vector<Backup> listBackups(const std::string& folder, const std::string& identifier,
                                gps::FileSystem& files)
{
    const auto parent = deviceFolder(folder, identifier);
    std::vector<std::string> names;
    std::vector<Backup> backups;
    (void)readNames(parent, names, files); // those that can be read are offered
    (void)readBackups(parent, names, backups, files);
    return backups;
}

std::vector<DamagedBackup> listDamagedBackups(const std::string& folder,
                                              const std::string& identifier, gps::FileSystem& files)
{
    const auto parent = deviceFolder(folder, identifier);
    std::vector<std::string> names;
    (void)readNames(parent, names, files);
    std::vector<DamagedBackup> damaged;
    for (const auto& name : names) {
        auto path = gps::joinPath(parent, name);
        Manifest ignored;
        bool isFolder = false;
        if (isBackupName(name) && gps::FileManager{&files}.fileExists(path, &isFolder) &&
            isFolder && readManifest(path, ignored, files))
            damaged.push_back({std::move(path), name});
    }
    return damaged;
}

} // namespace host
