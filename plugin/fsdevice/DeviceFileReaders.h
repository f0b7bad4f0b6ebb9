// SPDX-License-Identifier: MIT
// Readers: one of a receiver's data files -> records, through the codec. Used by downloads, imports
// and, to load what a file holds before records are merged into it, by sends. Stateless. Status
// calls are made on the calling thread. [any]
//
// A file is 7-bit ASCII, split into lines at CR LF. Lines that are not sentences of the kind are
// ignored. A file that cannot be read is logged, whatever the debug level. All operations throw
// gps::RangeError at a truncated sentence; what they reported or collected before it stays. Those
// that take an account record in it what becomes of each line; null: nothing is recorded.

#pragma once

#include "../common/RecordKind.h"

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace gps {
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

struct NamedKind;

/// `acquireTracks:fromPath:`: reports `newTrack:` before the first point of each track, whose name
/// is "Current Track" if its points have none, and `trackPoint:extra:` for each point.
/// @return  always nullopt
std::optional<gps::Error> acquireTracks(gps::GPSOutputReceiver& status, const std::string& path,
                                        gps::FileAccount* account = nullptr);

/// `acquireWayPoints:fromPath:`: reports `wayPoint:extra:` once per name, in the order in which the
/// names first appear; of several waypoints with one name, the last.
/// @return  the system's read error; nothing was reported then
[[nodiscard]] std::optional<gps::Error> acquireWayPoints(gps::GPSOutputReceiver& status,
                                                         const std::string& path,
                                                         gps::FileAccount* account = nullptr);

/// `acquireRoutes:fromPath:`: reports `newRoute:` for each complete route, then `wayPoint:extra:`
/// for each of its points, with "point" among the extras. Waypoints without a route are not
/// reported.
/// @return  always nullopt
std::optional<gps::Error> acquireRoutes(gps::GPSOutputReceiver& status, const std::string& path,
                                        gps::FileAccount* account = nullptr);

/// `acquireGeoCaches:fromPath:`: like acquireWayPoints().
[[nodiscard]] std::optional<gps::Error> acquireGeoCaches(gps::GPSOutputReceiver& status,
                                                         const std::string& path,
                                                         gps::FileAccount* account = nullptr);

/// Reports the records in the text of a file, as the four operations above do.
/// @param lines  gets what becomes of each line
void reportRecords(RecordKind kind, gps::GPSOutputReceiver& status, std::string_view text,
                   gps::LineAccount& lines);

/// `acquireWayPointsFromPath:intoDictionary:`, `acquireGeoCachesFromPath:intoDictionary:`.
/// @param records  out: records (with "point") by name. A later record of a name replaces the
///                 earlier one and keeps its position; a record without a name is skipped
/// @return         the system's read error; nothing was added then
[[nodiscard]] std::optional<gps::Error> acquireWayPointsFromPath(const std::string& path,
                                                                 gps::Dictionary& records);
[[nodiscard]] std::optional<gps::Error> acquireGeoCachesFromPath(const std::string& path,
                                                                 gps::Dictionary& records);

/// `acquireRoutesFromPath:intoWaypoints:andRoutes:`. A waypoint must precede the routes that name
/// it.
/// @param waypoints  out: waypoint records (with "point") by name
/// @param routes     out: complete routes by name: "name", "comment", "lastIndex" and "points", an
///                   array of waypoint records
/// @return           always nullopt
std::optional<gps::Error> acquireRoutesFromPath(const std::string& path, gps::Dictionary& waypoints,
                                                gps::Dictionary& routes);

/// The same for a text that was read already.
void collectRoutes(std::string_view text, gps::Dictionary& waypoints, gps::Dictionary& routes,
                   gps::LineAccount* account = nullptr);

/// Visits the waypoints, or geocaches, of a text in its order, also those that a later one
/// replaces.
/// @param visit  gets the record with its "point"; valid for the call
/// @throws gps::RangeError  a sentence is truncated; the records before it have been visited
void visitWayPoints(std::string_view text,
                    const std::function<void(const gps::Dictionary& record)>& visit);
void visitGeoCaches(std::string_view text,
                    const std::function<void(const gps::Dictionary& record)>& visit);

/// Visits only the points, in the order of the text, of the lines that have a name or of a track.
/// @throws gps::RangeError  a sentence is truncated; the points before it have been visited
void visitPointsOf(const NamedKind& kind, std::string_view text,
                   const std::function<void(const gps::GPSPoint& point)>& visit);
void visitTrackPoints(std::string_view text,
                      const std::function<void(const gps::GPSPoint& point)>& visit);

/// The points in the text of a track file, as records that hold only "point".
[[nodiscard]] gps::Array collectTrackPoints(std::string_view text);

/// Reads a whole file. Logs a failure with the kind's message.
/// @param text  out: empty after a failure
/// @return      the system's read error
std::optional<gps::Error> readDeviceFile(RecordKind kind, const std::string& path,
                                         std::string& text, gps::FileAccount* account = nullptr);

} // namespace magellan
