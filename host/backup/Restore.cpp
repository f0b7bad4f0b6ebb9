// SPDX-License-Identifier: MIT

#include "host/backup/Restore.h"

#include "host/base/HostError.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"

#include <platform/System/FileManager.h>

#include <algorithm>
#include <set>
#include <utility>

namespace host {

std::optional<gps::Error> Restore::open(const std::string& backup)
{
    Manifest manifest;
    if (auto failure = readManifest(backup, manifest))
        return failure;
    backup_ = backup;
    manifest_ = std::move(manifest);
    for (const auto& file : manifest_.files) {
        std::string bytes;
        if (auto failure = gps::FileManager{}.readFile(pathOf(file), bytes))
            return failure;
        if (bytes.size() != file.size || hashOf(bytes) != file.hash)
            return hostError("A file of the backup is damaged", "Choose another backup",
                             pathOf(file));
    }
    return std::nullopt;
}

bool Restore::isOn(const std::string& device) const
{
    return std::all_of(manifest_.files.begin(), manifest_.files.end(),
                       [&](const BackedUpFile& file) { return isOn(device, file); });
}

bool Restore::isOn(const std::string& device, const BackedUpFile& file)
{
    std::string present;
    return !gps::FileManager{}.readFile(gps::joinPath(device, file.path), present) &&
           present.size() == file.size && hashOf(present) == file.hash;
}

std::optional<gps::Error> Restore::write(const std::string& device,
                                         std::vector<std::string>& written) const
{
    for (const auto& file : manifest_.files) {
        if (isOn(device, file))
            continue;
        std::string bytes;
        if (auto failure = gps::FileManager{}.readFile(pathOf(file), bytes))
            return failure;
        if (auto failure = writeFile(gps::joinPath(device, file.path), bytes))
            return failure;
        written.push_back(file.path);
    }
    return std::nullopt;
}

std::vector<std::string> Restore::strangers(const std::string& device) const
{
    std::set<std::string> known;
    for (const auto& file : manifest_.files)
        known.insert(file.path);
    std::vector<std::string> strangers;
    for (const auto& folder : manifest_.folders) {
        auto entries = gps::FileManager{}.enumerator(gps::joinPath(device, folder));
        while (const auto entry = entries.next()) {
            auto path = gps::joinPath(folder, entry->relativePath);
            if (!entry->isFolder && !known.contains(path))
                strangers.push_back(std::move(path));
        }
    }
    return strangers;
}

std::string Restore::pathOf(const BackedUpFile& file) const
{
    return gps::joinPath(gps::joinPath(backup_, kFilesName), file.path);
}

} // namespace host
