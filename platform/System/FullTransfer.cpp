// SPDX-License-Identifier: MIT
// A system call may transfer less than was asked for, and a signal may interrupt it: each loop goes
// on until everything is transferred, the file ends or the call fails for another reason.

#include "FullTransfer.h"

#include "FileSystem.h"
#include "LargePages.h"

#include <algorithm>
#include <cerrno>

namespace gps {
namespace {

constexpr std::size_t kPiece = std::size_t{256}
                               << 10; // bytes for one read, so that they stay in cache

/// Calls `write` with the part of the data that is left, until none is.
template <typename Write> int writeWhole(std::string_view data, Write write)
{
    while (!data.empty()) {
        const ssize_t written = write(data);
        if (written > 0)
            data.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0)
            return EIO; // nothing would ever be written
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

int writeAll(FileSystem& files, int file, std::string_view data)
{
    return writeWhole(
        data, [&](std::string_view rest) { return files.write(file, rest.data(), rest.size()); });
}

int writeAt(FileSystem& files, int file, off_t offset, std::string_view data)
{
    const char* const start = data.data();
    return writeWhole(data, [&](std::string_view rest) {
        return files.pwrite(file, rest.data(), rest.size(), offset + (rest.data() - start));
    });
}

int readAll(FileSystem& files, int file, std::size_t expected, std::size_t limit,
            std::string& bytes)
{
    // With one byte more than expected, the read that finds the end needs no more memory.
    const std::size_t room = expected + 1;
    bytes.clear();
    bytes.reserve(std::min(room, limit));
    useLargePages(bytes.data(), bytes.capacity());
    while (bytes.size() < limit) {
        const std::size_t used = bytes.size();
        const std::size_t wanted =
            std::clamp<std::size_t>(used < room ? room - used : kPiece, 1, kPiece);
        bytes.resize(std::min(used + wanted, limit));
        const ssize_t count = files.read(file, bytes.data() + used, bytes.size() - used);
        const int failure = count < 0 ? errno : 0;
        bytes.resize(used + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0)
            return 0;
        if (failure != 0 && failure != EINTR)
            return failure;
    }
    return 0;
}

int readAt(FileSystem& files, int file, off_t offset, char* buffer, std::size_t size,
           std::size_t& count)
{
    count = 0;
    while (count < size) {
        const ssize_t read =
            files.pread(file, buffer + count, size - count, offset + static_cast<off_t>(count));
        if (read == 0)
            return 0;
        if (read > 0)
            count += static_cast<std::size_t>(read);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace gps
