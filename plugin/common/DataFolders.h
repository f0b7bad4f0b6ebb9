// SPDX-License-Identifier: MIT
// Data folders: where a mounted receiver stores each kind of records. Used by the driver for
// downloads and sends. Stateless. [any]

#pragma once

#include "RecordKind.h"

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

} // namespace magellan
