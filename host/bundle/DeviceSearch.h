// SPDX-License-Identifier: MIT
// Errors for commands that find no receiver: what the drivers looked at, why that was not a
// receiver, and what the user can do. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// For a command whose user named no device. Volumes that a driver skipped are counted; other
/// locations are named with the driver's reason.
[[nodiscard]] gps::Error noReceiverError(const std::vector<Driver>& drivers);

/// For a folder that the user named as a device, and that the drivers have searched: why it is not
/// one, or cannot be used. nullopt if no driver reports that.
[[nodiscard]] std::optional<gps::Error> explainFolder(const std::vector<Driver>& drivers,
                                                      const std::string& folder);

} // namespace host
