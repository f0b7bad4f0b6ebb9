// SPDX-License-Identifier: MIT

#include "SendOrder.h"

#include "../common/FolderWalk.h"
#include "DeviceFileWriters.h"
#include "GeocacheSplit.h"

#include <platform/System/FileManager.h>

#include <utility>

namespace magellan {

std::string targetOf(const SendJob& job)
{
    switch (job.kind) {
    case SendKind::kTracks:
        return *job.folder;
    case SendKind::kWaypoints:
        return gps::joinPath(*job.folder, kDefaultWaypointFile);
    case SendKind::kGeocaches:
        return gps::joinPath(*job.folder, kDefaultGeocacheFile);
    case SendKind::kRoutes:
        break;
    }
    return gps::joinPath(*job.folder, kDefaultRouteFile);
}

std::vector<SendBracket> sendOrder(const gps::Dictionary& data, const gps::Dictionary& folders,
                                   const std::string& volume)
{
    const auto folder = [&](std::string_view key) { return dataFolderPath(folders, key, volume); };
    std::vector<SendBracket> order;
    if (const auto* tracks = data.findArray("track"))
        order.push_back({"Tracks",
                         gps::TransferKind::kTracks,
                         {{SendKind::kTracks, *tracks, folder("TrackLogs")}}});
    if (const auto* waypoints = data.findArray("waypoint")) {
        SendBracket bracket{"Waypoints", gps::TransferKind::kWaypoints, {}};
        // A receiver without a folder for geocaches gets them as points of interest.
        const auto caches = folder("Geocaches");
        auto split =
            caches ? extractGeocachesFromList(*waypoints) : SplitList{*waypoints, std::nullopt};
        if (split.waypoints)
            bracket.jobs.push_back(
                {SendKind::kWaypoints, std::move(*split.waypoints), folder("MyPOIs")});
        if (split.geocaches)
            bracket.jobs.push_back({SendKind::kGeocaches, std::move(*split.geocaches), caches});
        order.push_back(std::move(bracket));
    }
    if (const auto* routes = data.findArray("route"))
        order.push_back({"Routes",
                         gps::TransferKind::kRoutes,
                         {{SendKind::kRoutes, *routes, folder("Routes")}}});
    return order;
}

} // namespace magellan
