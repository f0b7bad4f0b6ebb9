// SPDX-License-Identifier: MIT
// Writers: records -> a receiver's data files. Used by sends, and by the planning before them. Each
// track gets a file of its own; waypoints, geocaches and routes are merged into one default file
// per kind, so that what the receiver holds is kept. Stateless. [any], but only one thread may
// write to a folder at a time.
//
// A file consists of sentences joined by CR LF. The last one is "$PMGNCMD,END*3D", without a line
// end. Writes are atomic: after a failure the old file is unchanged. Operations that merge throw
// gps::RangeError if the present file has a truncated sentence; nothing has been written then.

#pragma once

#include "NamedLines.h"
#include "PlannedTexts.h"

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// `saveTracks:usingFolder:deleting:` and its three companions, one per kind.
/// @param folder    the kind's data folder, an absolute path
/// @param deleting  whether to call deleteFilesFromDir() first
/// @param present   gets what becomes of the lines of the file that is merged into; may be null
/// @param planned   texts that need not be made again; may be null
/// @return          the system's write error. Tracks are written up to the first failure, and
///                  never replace a file
[[nodiscard]] std::optional<gps::Error> saveTracks(const gps::Array& records,
                                                   const std::string& folder, bool deleting,
                                                   const PlannedTexts* planned = nullptr);
[[nodiscard]] std::optional<gps::Error> saveWaypoints(const gps::Array& records,
                                                      const std::string& folder, bool deleting,
                                                      gps::FileAccount* present = nullptr,
                                                      const PlannedTexts* planned = nullptr);
[[nodiscard]] std::optional<gps::Error> saveRoutes(const gps::Array& records,
                                                   const std::string& folder, bool deleting,
                                                   gps::FileAccount* present = nullptr);
[[nodiscard]] std::optional<gps::Error> saveGeocaches(const gps::Array& records,
                                                      const std::string& folder, bool deleting,
                                                      gps::FileAccount* present = nullptr,
                                                      const PlannedTexts* planned = nullptr);

/// `saveTrack:toPath:`: writes one line per point of the track's "points". An element without a
/// point is skipped.
[[nodiscard]] std::optional<gps::Error> saveTrack(const gps::Dictionary& track,
                                                  const std::string& path);

/// `mergeWaypoints:intoPath:`: a waypoint replaces the file's own of the same "name". A waypoint
/// without a name is skipped. A missing or unreadable file counts as empty.
[[nodiscard]] std::optional<gps::Error> mergeWaypoints(const gps::Array& records,
                                                       const std::string& path,
                                                       gps::FileAccount* present = nullptr,
                                                       const PlannedTexts* planned = nullptr);

/// `mergeGeocaches:intoPath:`: a geocache replaces the file's own whose "name" equals its
/// geocacheKey(). One without a key is skipped. If any record has no point, nothing is written and
/// no error is returned.
[[nodiscard]] std::optional<gps::Error> mergeGeocaches(const gps::Array& records,
                                                       const std::string& path,
                                                       gps::FileAccount* present = nullptr,
                                                       const PlannedTexts* planned = nullptr);

/// The key under which a geocache is merged: its "cacheID" (of a number, the decimal text) or,
/// without one, its "name". Returns nullopt if it has neither.
[[nodiscard]] std::optional<std::string> geocacheKey(const gps::Dictionary& record);

/// `mergeRoutes:intoPath:`: writes all waypoints sorted by name, then all routes, numbered from 1:
/// the file's own first, each at its position, then the new ones.
[[nodiscard]] std::optional<gps::Error> mergeRoutes(const gps::Array& records,
                                                    const std::string& path,
                                                    gps::FileAccount* present = nullptr);

/// A point of a route that is stored under another name.
struct RenamedPoint {
    std::string route;  ///< the route's name; empty without one
    std::string before; ///< its name in the route
    std::string after;  ///< as the receiver stores it
};

/// `mergeRoute:intoWaypoints:andRoutes:`: a point that differs from the present waypoint of its
/// name is renamed to "NAME 1", "NAME 2" and so on, counting the clashes of that name within the
/// route. Points without a name are dropped. A route without a name is not stored, but its points
/// are.
/// @param renamed  gets the points that were renamed; may be null
void mergeRoute(const gps::Dictionary& route, gps::Dictionary& waypoints, gps::Dictionary& routes,
                std::vector<RenamedPoint>* renamed = nullptr);

/// The complete text of a file.
struct MadeText {
    std::string text;
    bool isWhole = true; ///< false if a record has no sentence, which is logged
};

/// The text of a track file.
[[nodiscard]] MadeText trackText(const gps::Dictionary& track);

/// The text of a default file after waypoints or geocaches were merged into the lines that it has.
/// Nullopt if any of the records is a geocache without a point.
[[nodiscard]] std::optional<MadeText> mergedNamedText(const gps::Array& records,
                                                      const NamedLines& present);

/// The complete text of a default file after the records were merged into `present`, its text so
/// far. The geocache text is nullopt if any record has no point.
/// @param lines    gets what becomes of the lines of `present`; may be null
/// @param renamed  gets the points that were renamed; may be null
[[nodiscard]] std::string mergedWaypointText(const gps::Array& records, std::string_view present,
                                             gps::LineAccount* lines = nullptr);
[[nodiscard]] std::optional<std::string> mergedGeocacheText(const gps::Array& records,
                                                            std::string_view present,
                                                            gps::LineAccount* lines = nullptr);
[[nodiscard]] std::string mergedRouteText(const gps::Array& records, std::string_view present,
                                          gps::LineAccount* lines = nullptr,
                                          std::vector<RenamedPoint>* renamed = nullptr);

/// The default files, by name within the kind's data folder.
inline constexpr char kDefaultWaypointFile[] = "Default POI File.upt";
inline constexpr char kDefaultRouteFile[] = "Default Route File.rte";
inline constexpr char kDefaultGeocacheFile[] = "Default Geocache File.gs";

/// `deleteFilesFromDir:withExtension:`: for each item below the folder that has the extension: if a
/// file with the item's relative path exists in the process's current folder, removes the folder
/// itself. Ignores errors. No send uses this.
void deleteFilesFromDir(const std::string& folder, std::string_view extension);

/// `getNextFileNameFromPath:andIntTemplate:`: the path with the lowest number below kTrackNumbers
/// at which nothing exists. A path that cannot be looked up counts as taken. Returns nullopt if all
/// are taken.
/// @param name  makes the file name with a number
[[nodiscard]] std::optional<std::string> getNextFileNameFromPath(const std::string& folder,
                                                                 std::string (*name)(int));

/// Track files are numbered from 0 to one less than this: receivers do not list number 999.
inline constexpr int kTrackNumbers = 999;

/// "TKLG%03d.log".
[[nodiscard]] std::string trackFileName(int number);

} // namespace magellan
