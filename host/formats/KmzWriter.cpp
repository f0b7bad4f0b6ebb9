// SPDX-License-Identifier: MIT
// Compressing takes much longer than writing, and nobody reads a KMZ file while it grows, so all of
// it is done at the end.

#include "host/formats/KmzWriter.h"

#include "host/files/ZipWriter.h"

#include <string_view>

namespace host {

KmzWriter::KmzWriter(Output& output, const std::string& spoolFolder)
    : output_(output), document_(spoolFolder), kml_(document_, spoolFolder)
{}

std::optional<gps::Error> KmzWriter::close()
{
    if (auto failure = kml_.close())
        return failure;
    ZipWriter archive{output_, "doc.kml"}; // viewers open the first document, usually of this name
    document_.readBack(output_, [&archive](std::string_view text) { archive.write(text); });
    archive.finish();
    return output_.flush();
}

} // namespace host
