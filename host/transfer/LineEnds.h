// SPDX-License-Identifier: MIT
// LineEnds: recognises a receiver's file whose line ends were changed on its way. Drivers cut files
// only where receivers end lines, so all lines up to the next CR LF are one damaged line to them.
// [any]

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Whether a sentence begins behind a line end other than CR LF.
[[nodiscard]] bool hasOtherLineEnds(std::string_view content) noexcept;

/// Reads a file and explains such line ends.
/// @return  nullopt if it has none, or cannot be read
[[nodiscard]] std::optional<gps::Error> explainLineEnds(const std::string& path);

} // namespace host
