// SPDX-License-Identifier: MIT
// DirectoryEnumerator: walks the whole tree below a folder. Made by FileManager. [any]

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <dirent.h>

namespace gps {

class FileSystem;

/// A folder that could not be listed, or not to its end, or an entry that could not be looked at.
struct UnseenEntry {
    std::string path; ///< the walked folder's path included
    int systemError;  ///< errno
};

/// One entry of the tree.
struct FolderEntry {
    std::string relativePath; ///< below the walked folder, components joined by "/"
    bool isFolder = false;    ///< a real folder; false for a link to a folder
};

/// Yields the entries of a folder in byte order of their names, each folder before its contents.
/// Links are not followed. A missing folder yields no entries. A path that is not a folder, or that
/// cannot be read, also yields no entries and is logged. [any]
class DirectoryEnumerator {
public:
    /// @param files  for tests; null is the real file system
    explicit DirectoryEnumerator(std::string folder, FileSystem* files = nullptr);

    /// @return  the next entry; nullopt at the end
    [[nodiscard]] std::optional<FolderEntry> next();

    /// Skips the contents of the entry that next() returned last.
    void skipDescendants() noexcept { entersLast_ = false; }

    /// The errno of the first folder that could not be read, or not to its end; 0 if all were read.
    /// It is not a failure if the walked folder itself is missing.
    [[nodiscard]] int failure() const noexcept { return failure_; }

    /// What the walk could not see so far; the first kMostUnseen.
    [[nodiscard]] const std::vector<UnseenEntry>& unseen() const noexcept { return unseen_; }
    static constexpr std::size_t kMostUnseen = 1000;

private:
    struct Name {
        std::string name;
        bool isFolder;
    };
    struct Level {
        std::string relativePath; // empty, or with a "/" at its end
        std::vector<Name> names;
        std::size_t next = 0;
    };

    void enter(std::string relativePath);
    [[nodiscard]] bool isFolder(const std::string& parent, const dirent& entry);
    void fail(const char* what, const std::string& folder, int systemError);
    void addUnseen(const std::string& path, int systemError);

    std::string folder_;
    FileSystem* files_;
    std::vector<Level> levels_;
    std::string lastFolder_; // the path of the last entry, if it is a folder
    bool entersLast_ = false;
    int failure_ = 0;
    std::vector<UnseenEntry> unseen_;
};

} // namespace gps
