// SPDX-License-Identifier: MIT
// Reads one level at a time and sorts it: file systems list names in any order, and records must
// arrive in the same order on every machine.

#include "DirectoryEnumerator.h"

#include "FileSystem.h"
#include "Log.h"
#include "Paths.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace gps {
DirectoryEnumerator::DirectoryEnumerator(std::string folder, FileSystem* files)
    : folder_(std::move(folder)), files_(files != nullptr ? files : &FileSystem::system())
{
    enter({});
}

std::optional<FolderEntry> DirectoryEnumerator::next()
{
    if (std::exchange(entersLast_, false))
        enter(lastFolder_ + '/');
    while (!levels_.empty() && levels_.back().next == levels_.back().names.size())
        levels_.pop_back();
    if (levels_.empty())
        return std::nullopt;
    Level& level = levels_.back();
    const Name& name = level.names[level.next++];
    FolderEntry entry{level.relativePath + name.name, name.isFolder};
    if (entry.isFolder) {
        lastFolder_ = entry.relativePath;
        entersLast_ = true;
    }
    return entry;
}

void DirectoryEnumerator::enter(std::string relativePath)
{
    const std::string path = joinPath(folder_, relativePath);
    DIR* const folder = files_->opendir(path.c_str());
    if (folder == nullptr) {
        if (errno != ENOENT)
            fail("cannot be listed", path, errno);
        else if (!relativePath.empty()) // it has just been listed
            addUnseen(path, errno);
        return;
    }
    Level level{std::move(relativePath), {}, 0};
    errno = 0; // readdir() returns null at the end and after a failure
    while (const dirent* entry = files_->readdir(folder)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            level.names.push_back({std::string{name}, isFolder(path, *entry)});
        errno = 0;
    }
    if (errno != 0)
        fail("cannot be listed to its end", path, errno);
    (void)files_->closedir(folder);
    std::sort(level.names.begin(), level.names.end(),
              [](const Name& a, const Name& b) { return a.name < b.name; });
    levels_.push_back(std::move(level));
}

/// Some file systems do not report the type of an entry; vfat does.
bool DirectoryEnumerator::isFolder(const std::string& parent, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    const auto path = joinPath(parent, entry.d_name);
    struct stat status;
    if (files_->lstat(path.c_str(), &status) == 0)
        return S_ISDIR(status.st_mode);
    if (unseen_.size() < kMostUnseen)
        unseen_.push_back({path, errno});
    return false;
}

void DirectoryEnumerator::fail(const char* what, const std::string& folder, int systemError)
{
    addUnseen(folder, systemError);
    logLine("The folder \"" + folder + "\" " + what + ": " +
            std::generic_category().message(systemError));
}

void DirectoryEnumerator::addUnseen(const std::string& path, int systemError)
{
    if (failure_ == 0)
        failure_ = systemError;
    if (unseen_.size() < kMostUnseen)
        unseen_.push_back({path.substr(0, path.find_last_not_of('/') + 1), systemError});
}

} // namespace gps
