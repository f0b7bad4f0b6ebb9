// SPDX-License-Identifier: MIT
// MapFileImport: reads a GPX, KML or KMZ file as an operation of its own, with the calls that a
// driver makes when it imports one of its files. So every output is made of such files, too. [host
// thread]

#pragma once

#include "host/formats/GpxReader.h"
#include "host/formats/UnreadParts.h"
#include "host/operations/EventStream.h"

#include <gps/Error.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The extensions of the files that importMapFile() reads.
inline constexpr std::array<std::string_view, 3> kMapFileTypes{"gpx", "kml", "kmz"};

/// Whether a file has one of these extensions, in either case.
[[nodiscard]] bool isMapFile(const std::string& file);

/// Reports records that were read as for a send: waypoints, routes, then tracks with their
/// segments. The last call is gpsStateChange() with 0.
void reportRecords(const gps::Dictionary& data, EventStream& status);

/// Reports the records of a file. An unknown elevation is a NaN. The last call is gpsStateChange()
/// with 0.
/// @param unread    gets what was left out
/// @param progress  called while a GPX file is read, before the first report
/// @return          why the file cannot be read. Nothing was reported then
[[nodiscard]] std::optional<gps::Error> importMapFile(const std::string& file, EventStream& status,
                                                      UnreadParts& unread,
                                                      const ReadProgress& progress = {});

} // namespace host
