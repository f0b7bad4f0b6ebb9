// SPDX-License-Identifier: MIT
// Reads any bytes as the JSON data of a send. A rejected file changes nothing and has an error with
// a text; of an accepted one, writing its data and reading them again changes nothing.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/Value.h>
#include <host/base/JsonText.h>
#include <host/formats/DataFile.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::optional<gps::Dictionary> read;
    std::vector<std::string> remarks;
    if (const auto error =
            host::readDataFile(fuzz::asFile(fuzz::textOf(data, size)), read, remarks)) {
        fuzz::require(!read && error->description().has_value(), "a rejected file changes nothing");
        return 0;
    }
    if (!read)
        return 0; // the file holds null
    std::array<std::string, 3> texts;
    for (auto& text : texts) {
        host::appendJson(text, *read);
        fuzz::require(!host::readDataFile(fuzz::asFile(text), read, remarks),
                      "written data can be read");
    }
    fuzz::require(texts[1] == texts[2], "written data, read and written again, are unchanged");
    return 0;
}
