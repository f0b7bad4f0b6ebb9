// SPDX-License-Identifier: MIT
// GpxImport: reads a GPX file as an operation of its own, with the calls that a driver makes when
// it imports one of its files. So every output is made of GPX files, too. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Whether a file has the extension of GPX files, in either case.
[[nodiscard]] bool isGpxFile(const std::string& file);

/// Reports the records of a GPX file: waypoints, routes, then tracks, each segment as a track. An
/// unknown elevation is a NaN. The last call is gpsStateChange() with 0.
/// @param skipped  gets an error for each waypoint that was left out, or for some and their number
/// @return         why the file cannot be read. Nothing was reported then
[[nodiscard]] std::optional<gps::Error> importGpx(const std::string& file,
                                                  gps::GPSOutputReceiver& status,
                                                  std::vector<gps::Error>& skipped);

} // namespace host
