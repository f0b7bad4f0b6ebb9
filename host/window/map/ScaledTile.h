// SPDX-License-Identifier: MIT
// ScaledTile: the tiles of zoom levels that a tile file does not have, made from those that it has.
// Takes time: not on the main loop's thread. [any]

#pragma once

#include "host/window/map/TileFile.h"

#include <optional>

namespace host {

/// How many levels before the first one of a file are made. Beyond, too many tiles would have to be
/// read for one.
inline constexpr int kMostLevelsBefore = 3;

/// A tile of the file. Where there is none, it is made: of a part of a shallower tile, or of the
/// deeper ones that it covers.
/// @param row  from the north
/// @return     nullopt: there is nothing to make it of
[[nodiscard]] std::optional<TileFile::Bytes> scaledTile(TileFile& file, int zoom, int column,
                                                        int row);

} // namespace host
