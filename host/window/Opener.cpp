// SPDX-License-Identifier: MIT
// What a second import brought would replace what the user has not seen yet, so files wait for the
// folders that were opened with them: one import brings them all.

#include "host/window/Opener.h"

#include "host/transfer/MapFileImport.h"
#include "host/window/base/Translation.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {

Opener::Opener(MessageArea& messages, Handlers handlers)
    : messages_(messages), handlers_(std::move(handlers))
{}

void Opener::drop(const std::vector<std::string>& paths, bool hasReceiver)
{
    open(paths, hasReceiver && std::any_of(paths.begin(), paths.end(), isMapFile));
}

void Opener::open(const std::vector<std::string>& paths, bool isToSend)
{
    std::vector<std::string> folders;
    std::vector<std::string> files;
    for (const auto& path : paths) {
        std::error_code ignored;
        if (path.empty())
            messages_.show(MessageTopic::kReceived,
                           tr("A file that is not on this computer cannot be opened. Copy it, and "
                              "open the copy."));
        else
            (std::filesystem::is_directory(path, ignored) ? folders : files).push_back(path);
    }
    if (folders.empty()) {
        if (!files.empty())
            handlers_.import({.paths = std::move(files), .isToSend = isToSend});
        return;
    }
    waiting_.paths.insert(waiting_.paths.end(), files.begin(), files.end());
    waiting_.isToSend = waiting_.isToSend || isToSend;
    handlers_.addFolders(folders);
}

// A folder that is not a receiver may be a memory card, or a copy of one.
void Opener::importRefused(const std::vector<RefusedFolder>& folders)
{
    auto request = std::exchange(waiting_, {});
    for (const auto& folder : folders) {
        request.paths.push_back(folder.path);
        request.notReceivers.push_back({true, folder.reason});
    }
    if (!request.paths.empty())
        handlers_.import(std::move(request));
}

} // namespace host
