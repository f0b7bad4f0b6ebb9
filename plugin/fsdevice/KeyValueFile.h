// SPDX-License-Identifier: MIT
// Key-value files: the receiver's description of itself ("Serial Number=12345") and of its folders.
// They are 7-bit ASCII, with lines separated by CR LF only. Used by the driver of mounted
// receivers. Stateless. [any]

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>

namespace magellan {

/// Parses lines of the form key "=" value. White space before the key is skipped; white space
/// before
/// "=" belongs to the key. A line without a key is ignored; a line without "=" is a key with the
/// value "". A later line of the same key replaces the earlier value.
[[nodiscard]] gps::Dictionary parseKeyValueText(std::string_view text);

/// `readMagellanDictionaryFromPath:error:`.
/// @param dictionary  out: key to value, both texts; unchanged after a failure
/// @return            the system's read error; 256 also for a file of more than 1 MiB
[[nodiscard]] std::optional<gps::Error> readMagellanDictionaryFromPath(const std::string& path,
                                                                       gps::Dictionary& dictionary);

/// `readMagellanUnitIDFromPath:error:`: reads the unit file of a volume. A volume is a receiver if
/// this file exists.
[[nodiscard]] std::optional<gps::Error> readMagellanUnitIDFromPath(const std::string& volume,
                                                                   gps::Dictionary& dictionary);

/// Whether a read error leaves open what the file says: it exists, and its bytes could not be read.
/// A file that is missing or is not text is the same at each attempt.
[[nodiscard]] bool mayBeReadLater(const gps::Error& error);

/// The path of a volume's unit file.
[[nodiscard]] std::string unitFilePath(const std::string& volume);

/// `readMagellanFolderDictionaryFromPath:`: the folder dictionary of a volume, which has the names
/// of the data folders by folder key. Comes from the volume's language file or, if that cannot be
/// read, from the plug-in's resources. Returns nullopt if both are missing.
/// @param error  out, may be null: why the language file could not be read although it exists
[[nodiscard]] std::optional<gps::Dictionary>
readMagellanFolderDictionaryFromPath(const std::string& volume,
                                     std::optional<gps::Error>* error = nullptr);

} // namespace magellan
