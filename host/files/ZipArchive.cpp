// SPDX-License-Identifier: MIT
// What the central directory says about a file counts; its header only shows where the data begin.
// No number is used as an offset or a size before it was checked.

#include "host/files/ZipArchive.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <cstdint>
#include <new>
#include <optional>

#define ZLIB_CONST // it does not change what it reads
#include <zlib.h>

namespace host {
namespace {

constexpr auto* kDamaged = marked("the archive is damaged or cut short");

/// A file that is compressed more than this is not a text, but made to fill the memory.
constexpr std::uint64_t kMostRatio = 200;
constexpr std::uint64_t kHarmless = std::uint64_t{16} << 20; // bytes of any ratio

// Reads a number, least significant byte first. Precondition: the text holds it.
std::uint32_t numberAt(std::string_view text, std::size_t offset, int bytes)
{
    std::uint32_t number = 0;
    for (int i = bytes; i-- > 0;)
        number =
            number << 8 | static_cast<unsigned char>(text[offset + static_cast<std::size_t>(i)]);
    return number;
}

std::uint32_t two(std::string_view text, std::size_t offset)
{
    return numberAt(text, offset, 2);
}

std::uint32_t four(std::string_view text, std::size_t offset)
{
    return numberAt(text, offset, 4);
}

// A file of the archive, as the central directory has it.
struct Entry {
    std::string_view name;
    std::uint32_t flags = 0;
    std::uint32_t method = 0;
    std::uint32_t checksum = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t size = 0;
    std::uint32_t header = 0; // its offset in the archive
};

// The end record is the last of its signature: a comment of up to 65,535 bytes can follow it.
std::optional<std::string_view> directoryOf(std::string_view archive)
{
    constexpr std::size_t kEndSize = 22;
    const auto end = archive.rfind("PK\5\6");
    if (end == std::string_view::npos || archive.size() - end < kEndSize)
        return std::nullopt;
    const std::size_t size = four(archive, end + 12);
    const std::size_t start = four(archive, end + 16);
    if (start > end || size > end - start)
        return std::nullopt;
    return archive.substr(start, size);
}

// Takes an entry from the directory. Returns nullopt at its end, and if it is damaged.
std::optional<Entry> takeEntry(std::string_view& directory)
{
    constexpr std::size_t kFixedSize = 46;
    if (directory.size() < kFixedSize || !directory.starts_with("PK\1\2"))
        return std::nullopt;
    const std::size_t nameSize = two(directory, 28);
    const auto size = kFixedSize + nameSize + two(directory, 30) + two(directory, 32);
    if (size > directory.size())
        return std::nullopt;
    Entry entry{.name = directory.substr(kFixedSize, nameSize),
                .flags = two(directory, 8),
                .method = two(directory, 10),
                .checksum = four(directory, 16),
                .compressedSize = four(directory, 20),
                .size = four(directory, 24),
                .header = four(directory, 42)};
    directory.remove_prefix(size);
    return entry;
}

std::optional<std::string_view> dataOf(std::string_view archive, const Entry& entry)
{
    constexpr std::size_t kFixedSize = 30;
    if (entry.header > archive.size() || archive.size() - entry.header < kFixedSize)
        return std::nullopt;
    auto data = archive.substr(entry.header);
    if (!data.starts_with("PK\3\4"))
        return std::nullopt;
    const auto start = kFixedSize + two(data, 26) + two(data, 28);
    if (start > data.size() || entry.compressedSize > data.size() - start)
        return std::nullopt;
    return data.substr(start, entry.compressedSize);
}

std::string problemOf(const Entry& entry, std::size_t most)
{
    constexpr std::uint32_t kEncrypted = 1;
    constexpr std::uint32_t kInZip64 = 0xFFFF'FFFF;
    if ((entry.flags & kEncrypted) != 0)
        return tr("the archive is encrypted");
    if (entry.method != 0 && entry.method != Z_DEFLATED)
        return tr("the archive is compressed in an unknown way");
    if (entry.size == kInZip64 || entry.compressedSize == kInZip64 || entry.size > most)
        return trFormat("the file in the archive is too large: more than {} MB", most >> 20);
    if (entry.size > kHarmless && entry.size / kMostRatio > entry.compressedSize)
        return trFormat("the archive is not opened: its {} MB are compressed to {} bytes, which "
                        "no map file is",
                        entry.size >> 20, entry.compressedSize);
    return {};
}

// Returns whether the data are a compressed text of the text's present size.
bool inflateInto(std::string& text, std::string_view data)
{
    z_stream stream{};
    constexpr int kRawWindow = -MAX_WBITS; // without a header of zlib's own
    if (inflateInit2(&stream, kRawWindow) != Z_OK)
        throw std::bad_alloc{};
    stream.next_in = reinterpret_cast<const Bytef*>(data.data());
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const int result = ::inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    return result == Z_STREAM_END && stream.avail_out == 0;
}

std::string extract(std::string_view archive, const Entry& entry, std::size_t most,
                    std::string& text)
{
    if (auto problem = problemOf(entry, most); !problem.empty())
        return problem;
    const auto data = dataOf(archive, entry);
    if (!data)
        return tr(kDamaged);
    if (entry.method == Z_DEFLATED) {
        text.assign(entry.size, '\0');
        if (!inflateInto(text, *data))
            return tr(kDamaged);
    } else {
        text = *data;
    }
    const auto checksum = crc32_z(0, reinterpret_cast<const Bytef*>(text.data()), text.size());
    return text.size() == entry.size && checksum == entry.checksum ? std::string{} : tr(kDamaged);
}

} // namespace

std::string extractFromZip(std::string_view archive, std::string_view extension, std::size_t most,
                           std::string& text, std::vector<std::string>* others)
{
    auto directory = directoryOf(archive);
    if (!directory)
        return tr(kDamaged);
    std::optional<Entry> first;
    while (const auto entry = takeEntry(*directory)) {
        if ('.' + fileTypeOf(entry->name) != extension)
            continue;
        if (!first)
            first = entry;
        else if (others != nullptr)
            others->emplace_back(entry->name);
    }
    if (first)
        return extract(archive, *first, most, text);
    return directory->empty() ? trFormat("the archive holds no {} file", extension) : tr(kDamaged);
}

} // namespace host
