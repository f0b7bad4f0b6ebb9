// SPDX-License-Identifier: MIT
// The events of watching in words, for `watch` and for the window. Stateless. [host thread]

#pragma once

#include "host/watching/WatchEvent.h"
#include "host/words/Message.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

struct WatchText {
    std::vector<std::string> lines{}; ///< for the standard output, without line ends
    std::vector<Message> notes{};     ///< for standard error
};

/// @param isNewOnly   whether only records are saved that were not saved before
/// @param isLogShown  whether the plug-in's log lines are among the notes
/// Precondition: the event is about a device or a disk.
[[nodiscard]] WatchText watchText(const WatchEvent& event, bool isNewOnly, bool isLogShown);

/// What the desktop shows about an event.
struct WatchNotification {
    std::string title;
    std::string text;
};

/// @return  nullopt if the event is not worth a notification: the end of each download is, but for
///          a failure that is followed by another try
[[nodiscard]] std::optional<WatchNotification> watchNotification(const WatchEvent& event,
                                                                 bool isNewOnly);

} // namespace host
