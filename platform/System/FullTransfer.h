// SPDX-License-Identifier: MIT
// Whole reads and writes of open files: the one place that continues after a short read or write
// and after EINTR. All results are 0 or an errno. [any]

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace gps {

class FileSystem;

/// Writes all of `data` at the file's current offset. [any]
/// @return  0 or errno; after a failure, some of the data may have been written
[[nodiscard]] int writeAll(FileSystem& files, int file, std::string_view data);

/// Reads from the file's current offset to its end, but at most `limit` bytes. [any]
/// @param expected  the content's likely size; a good guess saves memory and reads
/// @param bytes     out: what was read, also before a failure
/// @return          0 or errno
[[nodiscard]] int readAll(FileSystem& files, int file, std::size_t expected, std::size_t limit,
                          std::string& bytes);

/// Reads up to `size` bytes at an offset, fewer only at the end of the file. [any]
/// @param count  out: the number of bytes read; 0 at the end of the file
/// @return       0 or errno
[[nodiscard]] int readAt(FileSystem& files, int file, off_t offset, char* buffer, std::size_t size,
                         std::size_t& count);

/// Writes all of `data` at an offset. [any]
/// @return  0 or errno; after a failure, some of the data may have been written
[[nodiscard]] int writeAt(FileSystem& files, int file, off_t offset, std::string_view data);

} // namespace gps
