// SPDX-License-Identifier: MIT
// Geocaches travel in the waypoint list and get a file of their own only if the receiver has a
// folder for it.

#include "SendOrder.h"

#include "../common/DataFolders.h"
#include "DeviceFileWriters.h"
#include "GeocacheSplit.h"

#include <platform/System/FileManager.h>

#include <utility>

namespace magellan {

std::string targetOf(const SendJob& job)
{
    switch (job.kind) {
    case RecordKind::kTracks:
        return *job.folder;
    case RecordKind::kWaypoints:
        return gps::joinPath(*job.folder, kDefaultWaypointFile);
    case RecordKind::kGeocaches:
        return gps::joinPath(*job.folder, kDefaultGeocacheFile);
    case RecordKind::kRoutes:
        break;
    }
    return gps::joinPath(*job.folder, kDefaultRouteFile);
}

std::vector<SendBracket> sendOrder(const gps::Dictionary& data, const gps::Dictionary& folders,
                                   const std::string& volume)
{
    const auto folder = [&](RecordKind kind) { return dataFolderPath(folders, kind, volume); };
    std::vector<SendBracket> order;
    if (const auto* tracks = data.findArray("track"))
        order.push_back({"Tracks",
                         gps::TransferKind::kTracks,
                         {{RecordKind::kTracks, *tracks, folder(RecordKind::kTracks)}}});
    if (const auto* waypoints = data.findArray("waypoint")) {
        SendBracket bracket{"Waypoints", gps::TransferKind::kWaypoints, {}};
        // A receiver without a geocache folder gets geocaches as waypoints.
        const auto caches = folder(RecordKind::kGeocaches);
        auto split =
            caches ? extractGeocachesFromList(*waypoints) : SplitList{*waypoints, std::nullopt};
        if (split.waypoints)
            bracket.jobs.push_back({RecordKind::kWaypoints, std::move(*split.waypoints),
                                    folder(RecordKind::kWaypoints)});
        if (split.geocaches)
            bracket.jobs.push_back({RecordKind::kGeocaches, std::move(*split.geocaches), caches});
        order.push_back(std::move(bracket));
    }
    if (const auto* routes = data.findArray("route"))
        order.push_back({"Routes",
                         gps::TransferKind::kRoutes,
                         {{RecordKind::kRoutes, *routes, folder(RecordKind::kRoutes)}}});
    return order;
}

} // namespace magellan
