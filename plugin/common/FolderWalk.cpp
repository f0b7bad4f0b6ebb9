// SPDX-License-Identifier: MIT
// Readers throw at truncated sentences. On a download's worker that is caught here and nowhere
// else.

#include "FolderWalk.h"

#include "Errors.h"
#include "OperationAccount.h"
#include "OperationMonitor.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/Paths.h>

#include <exception>
#include <utility>

namespace magellan {
namespace {

/// Calls the reader. Catches what it throws, so that nothing in a file can end the process.
std::optional<gps::Error> read(Reader reader, gps::GPSOutputReceiver& status,
                               gps::FileAccount& account)
{
    try {
        return reader(status, account.path, &account);
    } catch (const std::exception& failure) {
        account.error = makeThrownError(failure, account.path);
        gps::logError(kFilesLogSource, *account.error);
        return account.error;
    }
}

} // namespace

std::vector<gps::UnseenEntry>
walkFolder(const std::string& folder,
           const std::function<bool(const gps::FolderEntry&, const std::string&)>& visit)
{
    auto enumerator = gps::FileManager{}.enumerator(folder);
    while (const auto entry = enumerator.next()) {
        // Only the first character counts: "sub/.name" is visited.
        if (entry->relativePath.front() == '.')
            enumerator.skipDescendants();
        else if (!visit(*entry, gps::joinPath(folder, entry->relativePath)))
            break;
    }
    return enumerator.unseen();
}

std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                       const std::string& folder, const WalkContext& context)
{
    std::optional<gps::Error> error;
    const auto visit = [&](const gps::FolderEntry& entry, const std::string& path) {
        if (context.monitor.stopRequested()) {
            context.account.setStopped();
            return false;
        }
        gps::FileAccount file{.kind = std::string{context.kind}, .path = path};
        error = read(reader, status, file);
        if (error || !entry.isFolder) // some readers ignore that a folder is not a file
            context.account.addFile(std::move(file));
        return !error;
    };
    for (const auto& unseen : walkFolder(folder, visit))
        context.account.addUnseen(context.kind, unseen.path,
                                  gps::makeReadError(unseen.path, unseen.systemError));
    return error;
}

} // namespace magellan
