// SPDX-License-Identifier: MIT
// The steps that replace a whole file at once, on a medium that may be pulled out at any moment.
// Used by FileManager. [any]

#pragma once

#include <string>
#include <string_view>

namespace gps {

class FileSystem;

/// Writes a file so that its name stands for the old content or the new one at any moment, and
/// answers when the new one is on the medium. A link is replaced; a replaced file's mode is kept
/// where there are modes.
/// @return  0, or the errno of the step that failed (EWOULDBLOCK: another writer is at work in the
/// folder). Unless the
///          failure came in a flush after the rename, the old file stands untouched and nothing
///          else is left behind
[[nodiscard]] int writeAtomically(FileSystem& files, const std::string& path,
                                  std::string_view data);

/// What would keep `writeAtomically` from it, as far as it can be seen without trying.
/// @return  0, or the errno
[[nodiscard]] int obstacleToWriting(FileSystem& files, const std::string& path);

} // namespace gps
