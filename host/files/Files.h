// SPDX-License-Identifier: MIT
// Files written for good: whole or not at all, and on the medium when it is said so. Stateless:
// [any] thread.

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Makes a folder with those above it. @return  why it is not there
[[nodiscard]] std::optional<gps::Error> makeFolders(const std::string& path);

/// Writes any bytes so that the name stands for the old content or the new one at any moment. Makes
/// the folder where it is missing. @return  why not; the old file is untouched then
[[nodiscard]] std::optional<gps::Error> writeFile(const std::string& path, std::string_view bytes);

/// Brings a folder's names to the medium, as far as its file system can.
void flushFolder(const std::string& path);

} // namespace host
