// SPDX-License-Identifier: MIT
// The backup is checked as a whole before the first write, so that a damaged one changes nothing.

#include "host/backup/Restore.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"
#include "host/files/StateFolder.h"
#include "host/files/TemporaryName.h"

#include <platform/System/FileManager.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string_view>
#include <utility>

namespace host {

std::optional<gps::Error> Restore::open(const std::string& backup)
{
    Manifest manifest;
    if (auto failure = readManifest(backup, manifest, files_))
        return failure;
    backup_ = backup;
    manifest_ = std::move(manifest);
    for (const auto& file : manifest_.files) {
        std::string bytes;
        if (auto failure = gps::FileManager{&files_}.readFile(pathOf(file), bytes))
            return failure;
        if (bytes.size() != file.size || hashOf(bytes) != file.hash)
            return hostError(tr("A file of the backup is damaged"), tr("Choose another backup"),
                             pathOf(file));
    }
    return std::nullopt;
}

bool Restore::isOf(const std::string& identifier, const std::string& device) const
{
    if (!identifier.empty() || manifest_.identifier) {
        const auto folder = std::filesystem::path{backup_}.parent_path().filename().string();
        return manifest_.identifier ? *manifest_.identifier == identifier
                                    : folder == nameOfDevice(identifier); // of an older version
    }
    const auto& files = manifest_.files;
    return files.empty() || std::any_of(files.begin(), files.end(), [&](const BackedUpFile& file) {
               return matches(device, file);
           });
}

// A link on the device could lead the writes to any file of the user.
std::optional<gps::Error> Restore::checkFolders(const std::string& device) const
{
    std::set<std::string> folders{manifest_.folders.begin(), manifest_.folders.end()};
    for (const auto& file : manifest_.files)
        folders.insert(file.path.substr(0, file.path.rfind('/') + 1));
    for (const auto& folder : folders) {
        const auto path = gps::joinPath(device, folder);
        if (gps::FileManager{&files_}.leadsOutOf(device, path))
            return hostError(tr("A folder of the device is a link that leads out of it"),
                             tr("Replace the link by a folder, and try again"), path);
    }
    return std::nullopt;
}

std::vector<std::string> Restore::folders(const std::string& device) const
{
    std::vector<std::string> paths;
    for (const auto& folder : manifest_.folders)
        paths.push_back(gps::joinPath(device, folder));
    return paths;
}

std::vector<std::string> Restore::changedFiles(const std::string& device) const
{
    std::vector<std::string> paths;
    for (const auto& file : manifest_.files) {
        if (!matches(device, file))
            paths.push_back(file.path);
    }
    return paths;
}

std::uint64_t Restore::bytesOf(const std::vector<std::string>& paths) const
{
    const std::set<std::string_view> wanted{paths.begin(), paths.end()};
    std::uint64_t bytes = 0;
    for (const auto& file : manifest_.files)
        bytes += wanted.contains(file.path) ? file.size : 0;
    return bytes;
}

bool Restore::matches(const std::string& device, const BackedUpFile& file) const
{
    std::string present;
    return !gps::FileManager{&files_}.readFile(gps::joinPath(device, file.path), present) &&
           present.size() == file.size && hashOf(present) == file.hash;
}

std::optional<gps::Error> Restore::write(const std::string& device, WrittenFiles& result,
                                         const std::function<bool()>& stopRequested) const
{
    result = {.asBefore = files()};
    for (const auto& file : manifest_.files) {
        if (stopRequested && stopRequested())
            return std::nullopt;
        result.asBefore.erase(result.asBefore.begin());
        if (matches(device, file))
            continue;
        if (auto failure = write(device, file))
            return failure;
        result.written.push_back(file.path);
    }
    return std::nullopt;
}

// Reads the file again: keeping all of them since open() would take as much memory as the backup.
std::optional<gps::Error> Restore::write(const std::string& device, const BackedUpFile& file) const
{
    std::string bytes;
    if (auto failure = gps::FileManager{&files_}.readFile(pathOf(file), bytes))
        return failure;
    return writeFile(gps::joinPath(device, file.path), bytes, files_);
}

std::vector<std::string> Restore::files() const
{
    std::vector<std::string> paths;
    for (const auto& file : manifest_.files)
        paths.push_back(file.path);
    return paths;
}

std::vector<std::string> Restore::extraFiles(const std::string& device) const
{
    std::set<std::string> backedUp;
    for (const auto& file : manifest_.files)
        backedUp.insert(file.path);
    std::vector<std::string> extra;
    for (const auto& folder : manifest_.folders) {
        auto entries = gps::FileManager{&files_}.enumerator(gps::joinPath(device, folder));
        while (const auto entry = entries.next()) {
            auto path = gps::joinPath(folder, entry->relativePath);
            const bool isData = !entry->isFolder && !isTemporaryName(gps::lastComponent(path));
            if (isData && !backedUp.contains(path))
                extra.push_back(std::move(path));
        }
    }
    return extra;
}

std::string Restore::pathOf(const BackedUpFile& file) const
{
    return gps::joinPath(gps::joinPath(backup_, kFilesName), file.path);
}

} // namespace host
