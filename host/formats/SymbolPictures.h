// SPDX-License-Identifier: MIT
// The pictures of waypoints on maps, by the names of symbols that receivers and programs use for
// them. Stateless. [any]

#pragma once

#include <string_view>

namespace host {

inline constexpr int kSymbolPictureSize = 16; ///< units, of width and height

struct SymbolPicture {
    std::string_view symbol; ///< in small letters
    std::string_view path;   ///< that of an SVG element, filled by the even-odd rule
};

/// The picture of a symbol, in whatever letters its name is written. Symbols that mean the same
/// share a path.
/// @return  null if there is none; it is valid until the end of the program
[[nodiscard]] const SymbolPicture* findSymbolPicture(std::string_view symbol);

} // namespace host
