// SPDX-License-Identifier: MIT
// Readers: one of a receiver's data files <-> records, through the codec. The reporting readers
// hand each record to a status object; the collecting readers fill dictionaries, and are what
// merging starts from. No state between calls: [any] thread, and the status calls are made on it.
//
// A file is 7-bit ASCII, cut into lines at CR LF; a line that is no sentence of the kind is passed
// over. A file that cannot be read is logged, whatever the debug level. Every operation throws
// gps::RangeError at a sentence that is too short; what was reported before it stays reported.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>

namespace gps {
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

/// `acquireTracks:fromPath:`: `newTrack:` before the first point of each track and at each change
/// of name, `trackPoint:extra:` for each point. Points before any name belong to "Current Track".
/// @return  always none
std::optional<gps::Error> acquireTracks(gps::GPSOutputReceiver& status, const std::string& path);

/// `acquireWayPoints:fromPath:`: `wayPoint:extra:` for each waypoint in file order, one for each
/// name: the last in the file.
/// @return  the system's read error, without a status call
[[nodiscard]] std::optional<gps::Error> acquireWayPoints(gps::GPSOutputReceiver& status,
                                                         const std::string& path);

/// `acquireRoutes:fromPath:`: `newRoute:` for each complete route, then `wayPoint:extra:` for each
/// of its points, whose record still holds "point". Waypoints that no route uses are not reported.
/// @return  always none
std::optional<gps::Error> acquireRoutes(gps::GPSOutputReceiver& status, const std::string& path);

/// `acquireGeoCaches:fromPath:`: as waypoints are.
[[nodiscard]] std::optional<gps::Error> acquireGeoCaches(gps::GPSOutputReceiver& status,
                                                         const std::string& path);

/// `acquireWayPointsFromPath:intoDictionary:`, `acquireGeoCachesFromPath:intoDictionary:`.
/// @param records  name to record (with "point"); a name that is there already gets the later
/// record. One without a name is
///                 left out
/// @return         the system's read error, with nothing added
[[nodiscard]] std::optional<gps::Error> acquireWayPointsFromPath(const std::string& path,
                                                                 gps::Dictionary& records);
[[nodiscard]] std::optional<gps::Error> acquireGeoCachesFromPath(const std::string& path,
                                                                 gps::Dictionary& records);

/// `acquireRoutesFromPath:intoWaypoints:andRoutes:`. A waypoint must stand before the routes that
/// name it.
/// @param waypoints  name to waypoint record (with "point")
/// @param routes     name to route: "name", "comment", "lastIndex", "points" (an array of waypoint
/// records)
/// @return           always none
std::optional<gps::Error> acquireRoutesFromPath(const std::string& path, gps::Dictionary& waypoints,
                                                gps::Dictionary& routes);

} // namespace magellan
