// SPDX-License-Identifier: MIT
// Looks at the files that a user names for `import` and `send` before a driver does, to explain the
// usual mistakes: a misspelt name, a folder, a pipe, a file of another kind. [host thread]

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Replaces each folder by the receivers' files in it and below it, sorted by their paths. Leaves
/// out empty files, which hold nothing. Links to folders are not followed. A folder that is named
/// like a file is left to the check of the files.
/// @param types  the extensions that the driver imports
/// @return       why a folder gives no files, or cannot be listed
[[nodiscard]] std::optional<gps::Error> expandFolders(std::vector<std::string>& files,
                                                      const std::vector<std::string>& types);

/// The first file that cannot be imported, and why. Anything unusual is left to the driver.
/// @param types  the extensions that the driver imports
[[nodiscard]] std::optional<gps::Error> checkImport(const std::vector<std::string>& files,
                                                    const std::vector<std::string>& types);

/// The first file that cannot be sent, and why.
/// @param types  the extensions of the receivers' own files
[[nodiscard]] std::optional<gps::Error> checkSend(const std::vector<std::string>& files,
                                                  const std::vector<std::string>& types);

/// What is wrong with a file that is read whatever its name is.
[[nodiscard]] std::optional<gps::Error> checkInput(const std::string& file);

} // namespace host
