// SPDX-License-Identifier: MIT
// Readers throw at truncated sentences. On a download's worker that is caught here and nowhere
// else.

#include "FolderWalk.h"

#include "Errors.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/Paths.h>

#include <exception>

namespace magellan {
namespace {

/// Calls the reader. Catches what it throws, so that nothing in a file can end the process.
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

void walkFolder(const std::string& folder,
                const std::function<bool(const gps::FolderEntry&, const std::string&)>& visit)
{
    auto enumerator = gps::FileManager{}.enumerator(folder);
    while (const auto entry = enumerator.next()) {
        // Only the first character counts: "sub/.name" is visited.
        if (entry->relativePath.front() == '.')
            enumerator.skipDescendants();
        else if (!visit(*entry, gps::joinPath(folder, entry->relativePath)))
            return;
    }
}

std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                       const std::string& folder)
{
    std::optional<gps::Error> error;
    walkFolder(folder, [&](const gps::FolderEntry& /*entry*/, const std::string& path) {
        error = read(reader, status, path);
        return !error;
    });
    return error;
}

} // namespace magellan
