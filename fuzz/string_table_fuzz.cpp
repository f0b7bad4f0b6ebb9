// SPDX-License-Identifier: MIT
// Reads any bytes as a string table. A table that was read can be written and reads back unchanged.

#include "FuzzTarget.h"

#include <platform/System/StringTable.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace {

std::string inQuotes(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto table = gps::parseStringTable(fuzz::textOf(data, size));
    std::string written;
    for (const auto& [key, value] : table) {
        const auto* text = value.as<std::string>();
        fuzz::require(text != nullptr, "a table holds strings");
        written += inQuotes(key) + " = " + inQuotes(*text) + ";\n";
    }
    fuzz::require(gps::parseStringTable(written) == table, "a written table reads back");
    return 0;
}
