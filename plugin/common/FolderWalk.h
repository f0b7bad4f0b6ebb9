// SPDX-License-Identifier: MIT
// The walk over a data folder's tree: which entries a download reads, in which order. Stateless.
// [any]

#pragma once

#include <gps/Error.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {
class GPSOutputReceiver;
struct FileAccount;
struct FolderEntry;
struct UnseenEntry;
} // namespace gps

namespace magellan {

class OperationAccount;
class OperationMonitor;

/// Reads one file and reports its records to a status object.
/// @param account  gets what becomes of the file's lines; may be null
using Reader = std::optional<gps::Error> (*)(gps::GPSOutputReceiver& status,
                                             const std::string& path, gps::FileAccount* account);

/// The operation that a walk is part of.
struct WalkContext {
    std::string_view kind;           ///< of the files, as in gps::FileAccount
    const OperationMonitor& monitor; ///< may ask the walk to stop
    OperationAccount& account;       ///< gets each file, and what could not be seen
};

/// Visits every entry of a folder's tree, a folder before its contents, in byte order of the names.
/// A hidden entry directly in the folder is skipped with everything below it; hidden entries deeper
/// down are visited. A missing folder has no entries.
/// @param visit  gets the entry and its whole path; returns whether to continue
/// @return       what could not be seen
std::vector<gps::UnseenEntry>
walkFolder(const std::string& folder,
           const std::function<bool(const gps::FolderEntry&, const std::string&)>& visit);

/// `sendSelector:withOutput:forEachFileInPath:`: calls the reader for each entry that walkFolder()
/// visits, folders included. The first error ends the walk; so does a request to stop, before the
/// next entry.
/// @return  the error that a reader returned, or what it threw as an error (which is logged)
[[nodiscard]] std::optional<gps::Error> sendSelector(Reader reader, gps::GPSOutputReceiver& status,
                                                     const std::string& folder,
                                                     const WalkContext& context);

} // namespace magellan
