// SPDX-License-Identifier: MIT
// FileManager: whole files and folders, with errors as values. The plug-in's drivers and hosts read
// and write through it. [any]

#pragma once

#include "DirectoryEnumerator.h"
#include "FileError.h"
#include "Paths.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace gps {

class FileSystem;

/// Larger files are not read; in bytes.
inline constexpr std::size_t kLargestFile = std::size_t{2} << 30;

class FileManager {
public:
    /// @param files  for tests; null is the real file system
    explicit FileManager(FileSystem* files = nullptr);

    /// Whether something exists at a path. Links are followed.
    /// @param isFolder  out, may be null: whether it is a folder
    [[nodiscard]] bool fileExists(const std::string& path, bool* isFolder = nullptr) const;

    /// Like fileExists(), for a caller that must not take a failed look-up for a missing file.
    /// @param isFolder  out: false if nothing exists, or after a failure
    /// @return          why it is not known what exists at the path; codes as readFile()
    [[nodiscard]] std::optional<Error> lookUpFolder(const std::string& path, bool& isFolder) const;

    /// Whether nothing exists at a path, not even a link that leads nowhere. If that cannot be
    /// found out, the path counts as taken.
    [[nodiscard]] bool isFree(const std::string& path) const;

    /// Whether links lead from a path below `folder` to something that is not below it. Whatever
    /// cannot be found out, or does not exist, leads nowhere.
    [[nodiscard]] bool leadsOutOf(const std::string& folder, const std::string& path) const;

    /// Reads a whole regular file of 7-bit ASCII text. Fails at once, without opening it, if the
    /// path is a folder, a FIFO or a device, or a link to one.
    /// @param text   out: the bytes; empty after a failure
    /// @param limit  in bytes; a larger file is not read
    /// @return       code 257: no permission; 260: no such file; 261: a byte above 127; 256:
    ///               anything else, also a file larger than the limit
    [[nodiscard]] std::optional<Error> readAsciiFile(const std::string& path, std::string& text,
                                                     std::size_t limit = kLargestFile) const;

    /// Reads a whole regular file of any bytes.
    /// @param limit  in bytes; a larger file is not read
    /// @return       as readAsciiFile(), without 261; 256 also for a file larger than the limit
    [[nodiscard]] std::optional<Error> readFile(const std::string& path, std::string& bytes,
                                                std::size_t limit = kLargestFile) const;

    /// Reads up to `limit` bytes from the start of a regular file. If a read fails partway, returns
    /// the bytes read so far and no error.
    /// @return  as readFile() if the file cannot be opened or is not a regular file
    [[nodiscard]] std::optional<Error> readFront(const std::string& path, std::string& bytes,
                                                 std::size_t limit) const;

    /// Writes a whole file so that its name always refers to the old content or to the new one. The
    /// new content is on the medium when this returns without an error. A link is replaced, and the
    /// mode of a replaced file is kept. Only one write at a time is possible in a folder; another
    /// one fails at once.
    /// @return  code 4: no such folder; 513: no permission; 517: not ASCII; 640: no space; 642:
    ///          read-only volume; 512: anything else
    [[nodiscard]] std::optional<Error> writeAsciiFileAtomically(const std::string& path,
                                                                std::string_view text) const;

    /// Like writeAsciiFileAtomically(), but never replaces anything.
    /// @return  also code 516: something exists at the path
    [[nodiscard]] std::optional<Error> writeNewAsciiFile(const std::string& path,
                                                         std::string_view text) const;

    /// Checks without writing whether `writeAsciiFileAtomically` would fail because of a missing
    /// folder, missing permission, a read-only volume, or a folder at the path.
    /// @return  the error it would return; nullopt if no obstacle was found
    [[nodiscard]] std::optional<Error> writeObstacle(const std::string& path) const;

    /// Removes a file, or a folder with all its contents.
    /// @return  code 4 if nothing exists at the path; otherwise as writeAsciiFileAtomically()
    [[nodiscard]] std::optional<Error> removeItem(const std::string& path) const;

    /// Walks the tree below a folder.
    [[nodiscard]] DirectoryEnumerator enumerator(const std::string& folder) const;

private:
    FileSystem* files_;
};

} // namespace gps
