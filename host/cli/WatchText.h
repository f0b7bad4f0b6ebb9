// SPDX-License-Identifier: MIT
// The events of `watch` in words. Stateless. [host thread]

#pragma once

#include "host/cli/Message.h"
#include "host/watching/WatchEvent.h"

#include <string>
#include <vector>

namespace host {

struct WatchText {
    std::vector<std::string> lines{}; ///< for the standard output, without line ends
    std::vector<Message> notes{};     ///< for standard error
};

/// @param isNewOnly   whether only records are saved that were not saved before
/// @param isLogShown  whether the plug-in's log lines are among the notes
/// Precondition: the event is about a device.
[[nodiscard]] WatchText watchText(const WatchEvent& event, bool isNewOnly, bool isLogShown);

} // namespace host
