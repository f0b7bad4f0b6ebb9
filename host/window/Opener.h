// SPDX-License-Identifier: MIT
// Opener: what the user opens or drops. Folders are opened as receivers; files are imported, and so
// are folders that turn out not to be receivers. [main loop]

#pragma once

#include "host/window/base/MessageArea.h"
#include "host/window/devices/Receivers.h"
#include "host/words/Message.h"

#include <functional>
#include <string>
#include <vector>

namespace host {

struct ImportRequest {
    std::vector<std::string> paths{};
    bool isToSend = false;               ///< the records are meant for the selected receiver
    std::vector<Message> notReceivers{}; ///< why the folders among the paths are not receivers
};

class Opener {
public:
    struct Handlers {
        /// Adds at least one folder. importRefused() is to be called with the answer.
        std::function<void(const std::vector<std::string>& folders)> addFolders;
        std::function<void(ImportRequest request)> import;
    };

    Opener(MessageArea& messages, Handlers handlers);

    /// An empty path is that of a file that is not on this computer.
    void open(const std::vector<std::string>& paths) { open(paths, false); }

    /// Opens what was dropped onto the window.
    /// @param hasReceiver  whether a receiver is selected, which map files are meant for then
    void drop(const std::vector<std::string>& paths, bool hasReceiver);

    /// Imports the folders that are not receivers, and what was opened together with folders.
    void importRefused(const std::vector<RefusedFolder>& folders);

private:
    void open(const std::vector<std::string>& paths, bool isToSend);

    MessageArea& messages_;
    Handlers handlers_;
    ImportRequest waiting_; // for the answer about the folders
};

} // namespace host
