// SPDX-License-Identifier: MIT
// Paints a map without tiles: land and sea, and the names of places. Stateless. [any]

#pragma once

#include "host/window/map/MapPicture.h"

namespace host {

/// Beyond this zoom level everything is land: a coast is known to a kilometre only.
inline constexpr int kMostCoastZoom = 12;

[[nodiscard]] MapPicture paintCoasts(const MapView& view);

} // namespace host
