// SPDX-License-Identifier: MIT
// The sizes are known only behind the data, so they are in a data descriptor there, and in the
// central directory.

#include "host/files/ZipWriter.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"

#include <cstddef>
#include <initializer_list>
#include <new>
#include <utility>

#define ZLIB_CONST // it does not change what it reads
#include <zlib.h>

namespace host {
namespace {

// A number of a record, least significant byte first.
struct Number {
    std::uint32_t value;
    int bytes;
};

constexpr Number two(std::uint32_t value)
{
    return {value, 2};
}

constexpr Number four(std::uint32_t value)
{
    return {value, 4};
}

std::string bytesOf(std::initializer_list<Number> numbers)
{
    std::string bytes;
    for (auto [value, count] : numbers) {
        for (; count > 0; --count, value >>= 8)
            bytes += static_cast<char>(value & 0xFF);
    }
    return bytes;
}

constexpr std::uint32_t kVersion = 20;          // 2.0: compressed files
constexpr std::uint32_t kSizesFollow = 8;       // a flag: the data descriptor has them
constexpr std::uint32_t kDeflated = 8;          // the method
constexpr std::uint32_t kFirstDay = 1 << 5 | 1; // 1980-01-01: the file's own text has its time

// What the header of the data and the central directory have in common.
std::string commonFields()
{
    return bytesOf({two(kVersion), two(kSizesFollow), two(kDeflated), two(0), two(kFirstDay)});
}

} // namespace

struct ZipWriter::Deflate {
    Deflate()
    {
        constexpr int kRawWindow = -MAX_WBITS; // without a header of zlib's own
        constexpr int kMemory = 8;
        if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kRawWindow, kMemory,
                         Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc{};
    }
    ~Deflate() { deflateEnd(&stream); }
    Deflate(const Deflate&) = delete;
    Deflate& operator=(const Deflate&) = delete;

    z_stream stream{};
};

ZipWriter::ZipWriter(Output& output, std::string name)
    : output_(output), name_(std::move(name)), deflate_(std::make_unique<Deflate>()),
      start_(output.size()), data_(writeHead())
{}

/// Writes what comes before the file's data. Returns where they begin.
off_t ZipWriter::writeHead()
{
    const auto length = static_cast<std::uint32_t>(name_.size());
    output_.write("PK\3\4" + commonFields() +
                  bytesOf({four(0), four(0), four(0), two(length), two(0)}) + name_);
    return output_.size();
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::write(std::string_view text)
{
    size_ += text.size();
    checksum_ = static_cast<std::uint32_t>(
        crc32_z(checksum_, reinterpret_cast<const Bytef*>(text.data()), text.size()));
    // zlib counts in 32 bits.
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    for (; text.size() > kMostAtOnce; text.remove_prefix(kMostAtOnce))
        compress(text.substr(0, kMostAtOnce), Z_NO_FLUSH);
    compress(text, Z_NO_FLUSH);
}

void ZipWriter::finish()
{
    compress({}, Z_FINISH);
    compressedSize_ = static_cast<std::uint64_t>(output_.size() - data_);
    if (size_ > kMostBytes || static_cast<std::uint64_t>(output_.size() - start_) > kMostBytes)
        return output_.fail(
            hostError(tr("This is too much for an archive, which holds 4 GB at most"),
                      tr("Choose a format that is not compressed"), output_.name()));
    output_.write("PK\7\10" + sizes());

    const auto length = static_cast<std::uint32_t>(name_.size());
    const auto directory = output_.size();
    output_.write("PK\1\2" + bytesOf({two(kVersion)}) + commonFields() + sizes() +
                  bytesOf({two(length), two(0), two(0), two(0), two(0), four(0), four(0)}) + name_);
    const auto directorySize = static_cast<std::uint32_t>(output_.size() - directory);
    const auto directoryStart = static_cast<std::uint32_t>(directory - start_);
    output_.write("PK\5\6" + bytesOf({two(0), two(0), two(1), two(1), four(directorySize),
                                      four(directoryStart), two(0)}));
}

void ZipWriter::compress(std::string_view text, int flush)
{
    auto& stream = deflate_->stream;
    stream.next_in = reinterpret_cast<const Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    int result = Z_OK;
    do {
        constexpr std::size_t kRoom = Output::kMostRoom;
        char* const room = output_.room(kRoom);
        stream.next_out = reinterpret_cast<Bytef*>(room);
        stream.avail_out = kRoom;
        result = ::deflate(&stream, flush);
        output_.setEnd(reinterpret_cast<char*>(stream.next_out));
    } while (stream.avail_out == 0 || (flush == Z_FINISH && result == Z_OK));
}

// The checksum and both sizes.
std::string ZipWriter::sizes() const
{
    return bytesOf({four(checksum_), four(static_cast<std::uint32_t>(compressedSize_)),
                    four(static_cast<std::uint32_t>(size_))});
}

} // namespace host
