// SPDX-License-Identifier: MIT
// TileSource: a tile file as the library's map reads it.

#pragma once

#include "host/window/map/TileFile.h"

#include <memory>

#include <shumate/shumate.h>

namespace host {

/// Tiles are read by threads of the toolkit. [main loop]
/// @return  a new reference
[[nodiscard]] ShumateMapSource* newTileSource(std::shared_ptr<TileFile> file);

} // namespace host
