// SPDX-License-Identifier: MIT
// Reads any bytes as a KML file or, if they look like an archive, as a KMZ file. A rejected file
// adds no records and has an error with a text.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/Error.h>
#include <gps/Value.h>
#include <host/formats/KmlReader.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gps::Dictionary records;
    host::UnreadParts unread;
    const auto error = host::readKml(fuzz::asFile(fuzz::textOf(data, size)), records, unread);
    fuzz::require(!error || records.empty(), "a rejected file adds nothing");
    fuzz::require(!error || error->description().has_value(), "an error has a description");
    fuzz::require(unread.firstWaypoints.size() <= unread.waypoints, "what is named is counted");
    return 0;
}
