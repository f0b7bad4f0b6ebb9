// SPDX-License-Identifier: MIT
// What the drivers of several tests report: transfers without records, a waypoint, and an error.

#pragma once

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/Value.h>

#include <initializer_list>
#include <string>

namespace support {

inline void transfer(const gps::GPSPlugInProtocol::Status& status, gps::TransferKind kind)
{
    status->startTransfer(kind);
    status->endTransfer(kind);
}

inline void allTransfers(const gps::GPSPlugInProtocol::Status& status)
{
    for (const auto kind :
         {gps::TransferKind::kWaypoints, gps::TransferKind::kRoutes, gps::TransferKind::kTracks})
        transfer(status, kind);
}

inline gps::Dictionary waypointAt(double latitude, double longitude = 7)
{
    return {{"name", "A"}, {"point", gps::GPSPoint{.latitude = latitude, .longitude = longitude}}};
}

inline gps::Error errorAbout(const std::string& path)
{
    return {"some", -3, {{gps::kErrorDescriptionKey, "Unreadable"}, {gps::kErrorPathKey, path}}};
}

} // namespace support
