// SPDX-License-Identifier: MIT
// Reads any bytes as the manifest of a backup. An accepted one names nothing outside the device's
// folder, and a manifest written from it is read as the same.

#include "FuzzTarget.h"
#include "InputFile.h"

#include <host/backup/Manifest.h>
#include <platform/System/Paths.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

std::optional<host::Manifest> manifestIn(std::string_view text)
{
    fuzz::InputFileSystem files{text};
    host::Manifest manifest;
    if (host::readManifest("/backup", manifest, files))
        return std::nullopt;
    return manifest;
}

void requireSafe(const std::string& path)
{
    fuzz::require(!path.starts_with('/') && gps::staysInside(path) &&
                      path.find('\0') == std::string::npos,
                  "a path stays below the device's folder");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto manifest = manifestIn(fuzz::textOf(data, size));
    if (!manifest)
        return 0;
    for (const auto& folder : manifest->folders)
        requireSafe(folder);
    for (const auto& file : manifest->files)
        requireSafe(file.path);
    const auto text = host::manifestText(*manifest);
    const auto again = manifestIn(text);
    fuzz::require(again && host::manifestText(*again) == text, "a written manifest reads back");
    return 0;
}
