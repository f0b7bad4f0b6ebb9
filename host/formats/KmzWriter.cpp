// SPDX-License-Identifier: MIT
// Compressing takes much longer than writing, and nobody reads a KMZ file while it grows, so all of
// it is done at the end.

#include "host/formats/KmzWriter.h"

#include "host/files/ZipWriter.h"

#include <cstdint>
#include <string_view>

namespace host {

KmzWriter::KmzWriter(Output& output, const std::string& spoolFolder)
    : output_(output), document_(spoolFolder), kml_(document_, spoolFolder)
{}

std::optional<gps::Error> KmzWriter::close()
{
    if (auto failure = kml_.close())
        return failure;
    return compressDocument() ? output_.flush() : std::nullopt;
}

// Returns whether it was not stopped.
bool KmzWriter::compressDocument()
{
    ZipWriter archive{output_, "doc.kml"}; // viewers open the first document, usually of this name
    const auto total = static_cast<std::uint64_t>(document_.size());
    std::uint64_t bytes = 0;
    bool isWanted = true;
    document_.readBack(output_, [&](std::string_view text) {
        if (!isWanted) // reading the rest takes no time
            return;
        archive.write(text);
        bytes += text.size();
        isWanted = !watch_ || watch_(bytes, total);
    });
    if (isWanted)
        archive.finish();
    return isWanted;
}

} // namespace host
