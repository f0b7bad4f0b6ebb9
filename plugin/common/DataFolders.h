// SPDX-License-Identifier: MIT
// Data folders: where a mounted receiver stores each kind of records. Used by the driver for
// downloads and sends. Stateless. [any]

#pragma once

#include "RecordKind.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
} // namespace gps

namespace magellan {

/// The key of a kind in the folder dictionary, such as "MyPOIs".
[[nodiscard]] std::string_view folderKey(RecordKind kind) noexcept;

/// Returns the absolute path of a kind's data folder, whether it exists or not.
/// @param folders  the folder dictionary: folder key to folder name
/// @return         nullopt if the name is missing, is not a text, is empty, contains a NUL byte or
///                 has ".." as a component, or if links lead from the path out of the volume
[[nodiscard]] std::optional<std::string> dataFolderPath(const gps::Dictionary& folders,
                                                        RecordKind kind, const std::string& volume);

/// Returns why a kind's data folder is not used although the device may have it: links lead from
/// its path out of the volume. Nullopt for any other folder, also for one that is missing.
[[nodiscard]] std::optional<gps::Error>
dataFolderObstacle(const gps::Dictionary& folders, RecordKind kind, const std::string& volume);

} // namespace magellan
