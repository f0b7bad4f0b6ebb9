// SPDX-License-Identifier: MIT
// RecordKind: the four kinds of data that a mounted receiver stores, each in files of its own. Used
// by the readers, the writers and the driver. [any]

#pragma once

namespace magellan {

/// To the host geocaches are waypoints (transfer kind 3); on a receiver they have their own folder.
enum class RecordKind { kTracks, kWaypoints, kGeocaches, kRoutes };

/// The kind as plans and accounts name it.
[[nodiscard]] constexpr const char* nameOf(RecordKind kind) noexcept
{
    switch (kind) {
    case RecordKind::kTracks:
        return "tracks";
    case RecordKind::kWaypoints:
        return "waypoints";
    case RecordKind::kGeocaches:
        return "geocaches";
    case RecordKind::kRoutes:
        break;
    }
    return "routes";
}

} // namespace magellan
