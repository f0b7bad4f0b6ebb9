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

namespace {

/// An array as the value that holds it; null if the key is missing or its value is not an array.
const gps::Value* findList(const gps::Dictionary& data, std::string_view key)
{
    const auto* value = data.find(key);
    return value != nullptr && value->as<gps::Array>() != nullptr ? value : nullptr;
}

/// A receiver without a geocache folder gets geocaches as waypoints.
void addWaypointJobs(const gps::Value& list, std::optional<std::string> waypointFolder,
                     std::optional<std::string> geocacheFolder, std::vector<SendJob>& jobs)
{
    const auto& records = *list.as<gps::Array>();
    if (!geocacheFolder || !hasGeocache(records)) {
        if (!geocacheFolder || !records.empty())
            jobs.push_back({RecordKind::kWaypoints, list, std::move(waypointFolder)});
        return;
    }
    auto split = extractGeocachesFromList(records);
    if (split.waypoints)
        jobs.push_back(
            {RecordKind::kWaypoints, std::move(*split.waypoints), std::move(waypointFolder)});
    if (split.geocaches)
        jobs.push_back(
            {RecordKind::kGeocaches, std::move(*split.geocaches), std::move(geocacheFolder)});
}

} // namespace

std::vector<SendBracket> sendOrder(const gps::Dictionary& data, const gps::Dictionary& folders,
                                   const std::string& volume)
{
    const auto folder = [&](RecordKind kind) { return dataFolderPath(folders, kind, volume); };
    std::vector<SendBracket> order;
    if (const auto* tracks = findList(data, "track")) {
        order.push_back({"Tracks", gps::TransferKind::kTracks, {}});
        order.back().jobs.push_back({RecordKind::kTracks, *tracks, folder(RecordKind::kTracks)});
    }
    if (const auto* waypoints = findList(data, "waypoint")) {
        order.push_back({"Waypoints", gps::TransferKind::kWaypoints, {}});
        addWaypointJobs(*waypoints, folder(RecordKind::kWaypoints), folder(RecordKind::kGeocaches),
                        order.back().jobs);
    }
    if (const auto* routes = findList(data, "route")) {
        order.push_back({"Routes", gps::TransferKind::kRoutes, {}});
        order.back().jobs.push_back({RecordKind::kRoutes, *routes, folder(RecordKind::kRoutes)});
    }
    return order;
}

} // namespace magellan
