// SPDX-License-Identifier: MIT
// What becomes of a device's disk after a transfer, in messages. [host thread]

#pragma once

#include "host/desktop/DeviceDisk.h"
#include "host/words/Message.h"

#include <vector>

namespace host {

/// Unmounts or ejects the disk, as the user has asked.
/// @param succeeded  whether the transfer did; the device is ejected only then
/// @return           what was done, or an error. Empty if there was nothing to do
[[nodiscard]] std::vector<Message> releaseDisk(DeviceDisk& disk, bool succeeded);

} // namespace host
