// SPDX-License-Identifier: MIT
// Key-value files: every pair has a key, and what is read, written as lines, reads again as the
// same.

#include "FuzzTarget.h"

#include <gps/Value.h>

#include <string>

#include <plugin/fsdevice/KeyValueFile.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto pairs = magellan::parseKeyValueText(fuzz::textOf(data, size));
    std::string written;
    for (const auto& [key, value] : pairs) {
        const auto* text = value.as<std::string>();
        fuzz::require(!key.empty() && text != nullptr, "a key has characters, a value is text");
        written += key + "=" + *text + "\r\n";
    }
    fuzz::require(magellan::parseKeyValueText(written) == pairs, "written pairs read back");
    return 0;
}
