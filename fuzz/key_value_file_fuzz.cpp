// SPDX-License-Identifier: MIT
// Reads any bytes as a key-value file: every pair has a key, and the pairs, written as lines, read
// back unchanged.

#include "FuzzTarget.h"

#include <gps/Value.h>
#include <plugin/fsdevice/KeyValueFile.h>

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto pairs = magellan::parseKeyValueText(fuzz::textOf(data, size));
    std::string written;
    for (const auto& [key, value] : pairs) {
        const auto* text = value.as<std::string>();
        fuzz::require(!key.empty() && text != nullptr, "a key is not empty and a value is text");
        written += key + "=" + *text + "\r\n";
    }
    fuzz::require(magellan::parseKeyValueText(written) == pairs, "written pairs read back");
    return 0;
}
