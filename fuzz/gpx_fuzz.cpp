// SPDX-License-Identifier: MIT
// Reads any bytes as a GPX file. A rejected file adds no records and has an error with a text.
// Track points of the usual form have a reader of their own, which must read what the parser reads.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/Error.h>
#include <gps/Value.h>
#include <host/formats/GpxReader.h>

#include <cstdint>
#include <string>

namespace {

// With a space in each tag of a segment, all points go to the parser, and the file means the same.
std::string withoutPlainPoints(std::string xml)
{
    for (auto at = xml.find("<trkseg>"); at != std::string::npos; at = xml.find("<trkseg>", at))
        xml.insert(at + 7, " ");
    return xml;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string xml{fuzz::textOf(data, size)};
    gps::Dictionary records;
    const auto error = host::readGpx(fuzz::asFile(xml), records);
    fuzz::require(!error || records.empty(), "a rejected file adds nothing");
    fuzz::require(!error || error->description().has_value(), "an error has a description");

    gps::Dictionary parsed;
    const auto parseError = host::readGpx(fuzz::asFile(withoutPlainPoints(xml)), parsed);
    const bool isNamedLikeASegment = gps::describe(records).find("trkseg") != std::string::npos;
    fuzz::require(error.has_value() == parseError.has_value() &&
                      (records == parsed || isNamedLikeASegment),
                  "plain track points are what a parser reads");
    return 0;
}
