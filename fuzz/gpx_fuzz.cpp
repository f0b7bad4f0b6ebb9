// SPDX-License-Identifier: MIT
// Reads any bytes as a GPX file. A rejected file adds no records and has an error with a text.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/Error.h>
#include <gps/Value.h>
#include <host/formats/GpxReader.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gps::Dictionary records;
    const auto error = host::readGpx(fuzz::asFile(fuzz::textOf(data, size)), records);
    fuzz::require(!error || records.empty(), "a rejected file adds nothing");
    fuzz::require(!error || error->description().has_value(), "an error has a description");
    return 0;
}
