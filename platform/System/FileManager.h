// SPDX-License-Identifier: MIT
// FileManager: files and folders as the receivers' drivers need them, with errors as values. [any]

#pragma once

#include "Paths.h"

#include <gps/Error.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

class FileSystem;

/// The file errors' codes, in the domain "NSCocoaErrorDomain".
enum class FileErrorCode : std::int32_t {
    kNoSuchFolder = 4,
    kReadUnknown = 256,
    kReadNoPermission = 257,
    kReadNoSuchFile = 260,
    kReadNotAscii = 261,
    kWriteUnknown = 512,
    kWriteNoPermission = 513,
    kWriteFileExists = 516,
    kWriteNotAscii = 517,
    kWriteNoSpace = 640,
    kWriteReadOnlyVolume = 642,
};

/// A file error with the path, a description, and the errno text where `systemError` is not 0.
[[nodiscard]] Error makeFileError(FileErrorCode code, const std::string& path, int systemError = 0);

inline constexpr std::size_t kLargestFile = std::size_t{2}
                                            << 30; ///< bytes; a larger file is not read

/// One entry of a walked folder.
struct FolderEntry {
    std::string relativePath; ///< below the walked folder, parts joined by "/"
    bool isFolder = false;    ///< a real one: a link to a folder is none
};

/// Walks a folder's whole tree: in byte order of the names at each level, a folder before its
/// contents, links never descended into. What is not there has nothing to walk; what is no folder
/// or cannot be listed neither, and a log line tells.
class DirectoryEnumerator {
public:
    explicit DirectoryEnumerator(std::string folder, FileSystem* files = nullptr);

    /// The next entry; none at the end.
    [[nodiscard]] std::optional<FolderEntry> next();

    /// Leaves out what is inside the entry that came last.
    void skipDescendants() noexcept { descend_ = false; }

    /// The errno of the first folder that could not be listed, or not to its end; 0 if there is
    /// none. A missing folder does not count.
    [[nodiscard]] int failure() const noexcept { return failure_; }

private:
    struct Name {
        std::string name;
        bool isFolder;
    };
    struct Level {
        std::string relativePath; // "" or with a "/" at its end
        std::vector<Name> names;
        std::size_t next = 0;
    };

    void enter(std::string relativePath);
    void fail(const char* what, const std::string& folder, int systemError);

    std::string folder_;
    FileSystem* files_;
    std::vector<Level> levels_;
    std::string last_; // the entry that came last, if it is a folder
    bool descend_ = false;
    int failure_ = 0;
};

class FileManager {
public:
    /// @param files  the system to work on; the real one by default
    explicit FileManager(FileSystem* files = nullptr);

    /// Whether anything is there, links followed. @param isFolder  out, may be null: whether it is
    /// a folder
    [[nodiscard]] bool fileExists(const std::string& path, bool* isFolder = nullptr) const;

    /// Reads a whole regular file of at most kLargestFile bytes as 7-bit ASCII.
    /// @param text  out: the bytes; empty after a failure
    /// @return      257 no permission, 260 no such file, 261 a byte above 127, 256 anything else (a
    /// folder, a FIFO: at once)
    [[nodiscard]] std::optional<Error> readAsciiFile(const std::string& path,
                                                     std::string& text) const;

    /// The same for any bytes and at most `limit` of them (a larger file: 256).
    [[nodiscard]] std::optional<Error> readFile(const std::string& path, std::string& bytes,
                                                std::size_t limit = kLargestFile) const;

    /// At most `limit` bytes from a regular file's front, as far as they can be read.
    /// @return  as above when it cannot be opened or is no regular file; a read that fails is none,
    /// but the end of the front
    [[nodiscard]] std::optional<Error> readFront(const std::string& path, std::string& bytes,
                                                 std::size_t limit) const;

    /// Writes a whole file so that at any moment the old or the new one stands under the name,
    /// flushed to the medium before success is answered. A link is replaced; a replaced file's mode
    /// is kept. One writer a folder: a second one is refused.
    /// @return  4 no such folder, 513 no permission, 517 not ASCII, 640 no space, 642 read-only
    /// volume, 512 anything else
    [[nodiscard]] std::optional<Error> writeAsciiFileAtomically(const std::string& path,
                                                                std::string_view text) const;

    /// What would keep `writeAsciiFileAtomically` from writing a path, as far as it can be seen
    /// without trying: no such folder, no permission, a read-only volume, a folder of that name.
    /// @return  as there
    [[nodiscard]] std::optional<Error> writeObstacle(const std::string& path) const;

    /// Removes a file, or a folder with all that is in it.
    [[nodiscard]] std::optional<Error> removeItem(const std::string& path) const;

    [[nodiscard]] DirectoryEnumerator enumerator(const std::string& folder) const;

private:
    FileSystem* files_;
};

} // namespace gps
