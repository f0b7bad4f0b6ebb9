// SPDX-License-Identifier: MIT
// Key-value files: the receiver's description of itself ("Serial Number=12345") and of its folders.
// 7-bit ASCII, lines cut at CR LF and nowhere else. Stateless: [any] thread.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>

namespace magellan {

/// Reads lines of the form key "=" value: white space in front of the key is skipped, a line
/// without a key ignored, a line without "=" is a key with the value "". A later line of the same
/// key replaces the earlier value.
[[nodiscard]] gps::Dictionary parseKeyValueText(std::string_view text);

/// `readMagellanDictionaryFromPath:error:`.
/// @param dictionary  out: key to value, both texts; untouched after a failure
/// @return            the system's read error
[[nodiscard]] std::optional<gps::Error> readMagellanDictionaryFromPath(const std::string& path,
                                                                       gps::Dictionary& dictionary);

/// `readMagellanUnitIDFromPath:error:`: the unit file of a volume; its presence makes the volume a
/// receiver.
[[nodiscard]] std::optional<gps::Error> readMagellanUnitIDFromPath(const std::string& volume,
                                                                   gps::Dictionary& dictionary);

/// Where a volume's unit file lies.
[[nodiscard]] std::string unitFilePath(const std::string& volume);

/// `readMagellanFolderDictionaryFromPath:`: the names of a volume's data folders by folder key,
/// from its language file, or the default names when that cannot be read. @return  none when there
/// are no default names either
[[nodiscard]] std::optional<gps::Dictionary>
readMagellanFolderDictionaryFromPath(const std::string& volume);

} // namespace magellan
