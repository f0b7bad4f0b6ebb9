// SPDX-License-Identifier: MIT
// The walk over a data folder that hands each entry to a reader, and where a data folder lies.
// Stateless: [any] thread.

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

/// Reads one file and reports its records: an operation of the form (status object, file path).
using Reader = std::optional<gps::Error> (*)(gps::GPSOutputReceiver& status,
                                             const std::string& path);

/// `sendSelector:withOutput:forEachFileInPath:`: calls the reader for every entry of a folder's
/// whole tree, folders included. A hidden entry directly in the folder is left out with all that is
/// in it; one deeper down is not.
/// @return  the first error that the reader answers, or has thrown (then logged here), which ends
/// the walk; none when there is
///          no such folder
[[nodiscard]] std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                                     const std::string& folder);

/// Where a kind's data folder lies on a volume.
/// @param folders  the folder dictionary: folder key to folder name
/// @return         none when the name is missing, is no text, is empty, would lead out of the
/// volume or holds a NUL byte
[[nodiscard]] std::optional<std::string>
dataFolderPath(const gps::Dictionary& folders, std::string_view key, const std::string& volume);

} // namespace magellan
