// SPDX-License-Identifier: MIT
// GPX files: any bytes. A file that is refused adds nothing.

#include "DeviceFile.h"

#include <host/formats/GpxReader.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gps::Dictionary records;
    const auto error = host::readGpx(fuzz::asFile(fuzz::textOf(data, size)), records);
    fuzz::require(!error || records.empty(), "a file that is refused adds nothing");
    fuzz::require(!error || error->description().has_value(), "an error says what is wrong");
    return 0;
}
