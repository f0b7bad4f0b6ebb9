// SPDX-License-Identifier: MIT
// The walk over a data folder's tree: which entries a download reads, in which order. Stateless.
// [any]

#pragma once

#include <gps/Error.h>

#include <functional>
#include <optional>
#include <string>

namespace gps {
class GPSOutputReceiver;
struct FolderEntry;
} // namespace gps

namespace magellan {

/// Reads one file and reports its records to a status object.
using Reader = std::optional<gps::Error> (*)(gps::GPSOutputReceiver& status,
                                             const std::string& path);

/// Visits every entry of a folder's tree, a folder before its contents, in byte order of the names.
/// A hidden entry directly in the folder is skipped with everything below it; hidden entries deeper
/// down are visited. A missing folder has no entries.
/// @param visit  gets the entry and its whole path; returns whether to continue
void walkFolder(const std::string& folder,
                const std::function<bool(const gps::FolderEntry&, const std::string&)>& visit);

/// `sendSelector:withOutput:forEachFileInPath:`: calls the reader for each entry that walkFolder()
/// visits, folders included. The first error ends the walk.
/// @return  the error that a reader returned, or what it threw as an error (which is logged)
[[nodiscard]] std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                                     const std::string& folder);

} // namespace magellan
