// SPDX-License-Identifier: MIT
// ZipArchive: reads one file out of a ZIP archive in memory. The archive may be damaged, or made to
// do harm. Stateless. [any]
// Source of the format: PKWARE's APPNOTE.TXT 6.3; RFC 1951 for the compression.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Extracts the first file of an archive whose name ends with an extension, in either case.
/// @param extension  in small letters: ".kml"
/// @param most       the largest file that is extracted, in bytes
/// @param text       out: the file's content; unspecified after a failure
/// @param others     gets the names of the further files with this extension, as they are stored;
/// may
///                   be null
/// @return           why there is no such file, or why it cannot be extracted, as a part of a
///                   sentence; empty if it was
[[nodiscard]] std::string extractFromZip(std::string_view archive, std::string_view extension,
                                         std::size_t most, std::string& text,
                                         std::vector<std::string>* others = nullptr);

} // namespace host
