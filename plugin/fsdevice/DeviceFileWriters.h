// SPDX-License-Identifier: MIT
// Writers: records -> a receiver's data files. Tracks get a file each under fresh numbered names;
// waypoints, geocaches and routes are merged into one default file a kind, so that what the
// receiver holds survives. No state between calls: [any] thread, but one at a time in a folder.
//
// A file is sentences joined by CR LF with "$PMGNCMD,END*3D" as the last, without a line end behind
// it. Every write is atomic: whatever fails, the old file stands whole. Everything that reads a
// present file throws gps::RangeError at a sentence that is too short; nothing has been written
// then.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>

namespace magellan {

/// `saveTracks:usingFolder:deleting:` and its three companions: what a send calls, a kind each.
/// @param records   track, waypoint, route or geocache records
/// @param folder    the kind's data folder
/// @param deleting  calls deleteFilesFromDir first
/// @return          the system's write error; for tracks of the first one that could not be
/// written, where saving stops
[[nodiscard]] std::optional<gps::Error> saveTracks(const gps::Array& records,
                                                   const std::string& folder, bool deleting);
[[nodiscard]] std::optional<gps::Error> saveWaypoints(const gps::Array& records,
                                                      const std::string& folder, bool deleting);
[[nodiscard]] std::optional<gps::Error> saveRoutes(const gps::Array& records,
                                                   const std::string& folder, bool deleting);
[[nodiscard]] std::optional<gps::Error> saveGeocaches(const gps::Array& records,
                                                      const std::string& folder, bool deleting);

/// `saveTrack:toPath:`: one line a point of the track's "points"; a point record without its point
/// gives none.
[[nodiscard]] std::optional<gps::Error> saveTrack(const gps::Dictionary& track,
                                                  const std::string& path);

/// `mergeWaypoints:intoPath:`: a waypoint replaces the file's own of the same "name"; one without a
/// name is dropped. A file that cannot be read counts as empty.
[[nodiscard]] std::optional<gps::Error> mergeWaypoints(const gps::Array& records,
                                                       const std::string& path);

/// `mergeGeocaches:intoPath:`: keyed by "cacheID", or else by "name"; the file's own by their
/// names. With neither: dropped. When any record has no point nothing is written, and that is no
/// error.
[[nodiscard]] std::optional<gps::Error> mergeGeocaches(const gps::Array& records,
                                                       const std::string& path);

/// What a geocache is merged under: its "cacheID", a number as its decimal text, or else its
/// "name". @return  none with neither
[[nodiscard]] std::optional<std::string> geocacheKey(const gps::Dictionary& record);

/// `mergeRoutes:intoPath:`: all waypoints sorted by name, then all routes numbered from 1 in the
/// order of first coming.
[[nodiscard]] std::optional<gps::Error> mergeRoutes(const gps::Array& records,
                                                    const std::string& path);

/// `mergeRoute:intoWaypoints:andRoutes:`: a point that differs from the present waypoint of its
/// name gets a number behind its name, counted from 1 in each route. Points without a name, and a
/// route without one, are left out.
void mergeRoute(const gps::Dictionary& route, gps::Dictionary& waypoints, gps::Dictionary& routes);

/// What these write: a track file's whole text, and a default file's with the records merged in.
/// @return  for geocaches none when any record has no point
[[nodiscard]] std::string trackText(const gps::Dictionary& track);
[[nodiscard]] std::string mergedWaypointText(const gps::Array& records, const std::string& path);
[[nodiscard]] std::optional<std::string> mergedGeocacheText(const gps::Array& records,
                                                            const std::string& path);
[[nodiscard]] std::string mergedRouteText(const gps::Array& records, const std::string& path);

/// Where a kind is merged: a file of the kind's folder.
inline constexpr char kDefaultWaypointFile[] = "Default POI File.upt";
inline constexpr char kDefaultRouteFile[] = "Default Route File.rte";
inline constexpr char kDefaultGeocacheFile[] = "Default Geocache File.gs";

/// `deleteFilesFromDir:withExtension:`: for each item below the folder that bears the extension: if
/// a file of the item's relative path stands in the process's current folder, the folder itself is
/// removed. No send asks for it. Errors are ignored.
void deleteFilesFromDir(const std::string& folder, std::string_view extension);

/// `getNextFileNameFromPath:andIntTemplate:`: the path of the lowest number from 0 to 998 that
/// nothing stands at.
/// @param name  the file name of a number
[[nodiscard]] std::optional<std::string> getNextFileNameFromPath(const std::string& folder,
                                                                 std::string (*name)(int));

/// Track numbers end before this one: receivers do not list it.
inline constexpr int kTrackNumbers = 999;

/// "TKLG%03d.log".
[[nodiscard]] std::string trackFileName(int number);

} // namespace magellan
