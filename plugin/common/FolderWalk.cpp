// SPDX-License-Identifier: MIT

#include "FolderWalk.h"

#include "Errors.h"

#include <gps/Value.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/Paths.h>

#include <exception>

namespace magellan {
namespace {

/// Calls the reader. What it throws ends the walk as its error would: this is the one place where a
/// worker that reads a device catches, so that nothing that a file holds can end the process.
std::optional<gps::Error> read(Reader reader, gps::GPSOutputReceiver& status,
                               const std::string& path)
{
    try {
        return reader(status, path);
    } catch (const std::exception& failure) {
        auto error = makeThrownError(failure, path);
        gps::logError(kFilesLogSource, error);
        return error;
    }
}

} // namespace

std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                       const std::string& folder)
{
    auto enumerator = gps::FileManager{}.enumerator(folder);
    while (const auto entry = enumerator.next()) {
        if (entry->relativePath.front() == '.') {
            enumerator.skipDescendants();
            continue;
        }
        if (auto error = read(reader, status, gps::joinPath(folder, entry->relativePath)))
            return error;
    }
    return std::nullopt;
}

std::optional<std::string> dataFolderPath(const gps::Dictionary& folders, std::string_view key,
                                          const std::string& volume)
{
    const auto* name = folders.findString(key);
    if (name == nullptr || !gps::staysInside(*name))
        return std::nullopt;
    return gps::joinPath(volume, *name);
}

} // namespace magellan
