// SPDX-License-Identifier: MIT
// ZIP archives as other programs make them, and damaged ones.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <zlib.h>

namespace support {

inline std::string bytesOf(std::uint32_t value, int bytes)
{
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

struct ArchivedFile {
    std::string name;
    std::string data;
    std::uint32_t method = 0;
    std::uint32_t flags = 0;
    std::uint32_t size = static_cast<std::uint32_t>(data.size());
    std::uint32_t checksum = static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const Bytef*>(data.data()), data.size()));
    std::string extra{};
};

inline std::string archiveOf(const std::vector<ArchivedFile>& files,
                             const std::string& comment = {})
{
    std::string archive;
    std::string directory;
    for (const auto& file : files) {
        const auto header = static_cast<std::uint32_t>(archive.size());
        const auto fields =
            bytesOf(20, 2) + bytesOf(file.flags, 2) + bytesOf(file.method, 2) + bytesOf(0, 4) +
            bytesOf(file.checksum, 4) + bytesOf(static_cast<std::uint32_t>(file.data.size()), 4) +
            bytesOf(file.size, 4) + bytesOf(static_cast<std::uint32_t>(file.name.size()), 2) +
            bytesOf(static_cast<std::uint32_t>(file.extra.size()), 2);
        archive += "PK\3\4" + fields + file.name + file.extra + file.data;
        directory += "PK\1\2" + bytesOf(20, 2) + fields + bytesOf(0, 2) + bytesOf(0, 2) +
                     bytesOf(0, 2) + bytesOf(0, 4) + bytesOf(header, 4) + file.name + file.extra;
    }
    const auto count = bytesOf(static_cast<std::uint32_t>(files.size()), 2);
    return archive + directory + "PK\5\6" + bytesOf(0, 4) + count + count +
           bytesOf(static_cast<std::uint32_t>(directory.size()), 4) +
           bytesOf(static_cast<std::uint32_t>(archive.size()), 4) +
           bytesOf(static_cast<std::uint32_t>(comment.size()), 2) + comment;
}

} // namespace support
