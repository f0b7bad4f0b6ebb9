// SPDX-License-Identifier: MIT
// KmlReader: reads KML and KMZ files into a data dictionary like that of a GPX file. Stateless.
// [any] Source of the format: OGC KML 2.2 (OGC 07-147r2); for tracks its extension
// http://www.google.com/kml/ext/2.2.

#pragma once

#include "host/formats/UnreadParts.h"

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>

namespace host {

/// Adds the records of a file's placemarks, in its order, to the arrays under "waypoint", "route"
/// and "track" of `data`. Adds no key for a kind that the file lacks. A KMZ file is recognised by
/// its content; its first KML document is read. Links to other files are not followed.
///
/// - Point: a waypoint with "name", "comment", "symbol", "point"; a geocache also has its own
///   fields, if this program wrote the file.
/// - LineString, gx:Track: a track with "name", "comment" and "points". The lines of a
///   MultiGeometry or a gx:MultiTrack are segments of one track, as readGpx() makes them; a
///   LineString and a gx:Track that share an end are one segment, unless the file notes what
///   belongs together, as those of this program do.
/// - Folder of points and their line that this program wrote as a route: that route, as readGpx()
///   makes it, without its number.
///
/// A description of HTML becomes plain text. Areas, overlays and everything else are ignored.
///
/// @param unread  gets what was left out, such as the Points without valid coordinates
/// @return        an error with the line number if the file cannot be read, is not KML, is damaged
///                or cut short, has a line with an invalid position, or is made to do harm.
///                `data` is then unchanged
[[nodiscard]] std::optional<gps::Error> readKml(const std::string& path, gps::Dictionary& data,
                                                UnreadParts& unread);

} // namespace host
