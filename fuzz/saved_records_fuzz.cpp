// SPDX-License-Identifier: MIT
// Reads any bytes as the list of records that were saved before, unchanged and with the checksum
// that they should have. A list with the right title and checksum is accepted, and has each of its
// lines as a key; one that is rejected has no keys.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <host/files/Hash.h>
#include <host/watching/KnownRecords.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kTitle = "magellangps saved records 1\n";

/// @return  whether the list is accepted
bool checkList(std::string_view text)
{
    fuzz::InputFileSystem files{text};
    host::KnownRecords known{"/list", files};
    const auto failure = known.load();
    fuzz::require(!failure || failure->description().has_value(), "an error has a description");
    const auto firstLine = text.substr(0, text.find('\n'));
    fuzz::require(!failure || !known.contains(firstLine), "a rejected list is empty");
    return !failure;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto input = fuzz::textOf(data, size);
    (void)checkList(input);
    const auto body = std::string{kTitle} + std::string{input} + '\n';
    const auto text = body + "sum " + host::hashOf(body) + '\n';
    fuzz::require(checkList(text), "a list with its checksum is accepted");
    fuzz::InputFileSystem files{text};
    host::KnownRecords known{"/list", files};
    fuzz::require(!known.load() && known.contains(input.substr(0, input.find('\n'))),
                  "each line of a list is a key");
    return 0;
}
