// SPDX-License-Identifier: MIT
// FolderLock: keeps other processes of this program from working on the same folder at the same
// time. Used for a device while it is written, and for the backups of a device. [host thread]

#pragma once

#include <platform/System/FileSystem.h>
#include <platform/System/OpenFile.h>

#include <string>
#include <vector>

namespace host {

/// Tries once to lock a folder, and unlocks it when destroyed. A folder that cannot be opened, or
/// that is on a volume without locks, counts as locked: better an unlocked operation than none.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder,
                        gps::FileSystem& files = gps::FileSystem::system());

    /// Whether another lock of this folder exists, in this process or another one.
    [[nodiscard]] bool isHeldByAnother() const noexcept { return isHeldByAnother_; }

    /// Whether one of these paths leads to the locked folder. A file of that folder cannot be
    /// written while the lock exists, since an atomic write locks the folder, too.
    [[nodiscard]] bool isOfAny(const std::vector<std::string>& paths) const;

private:
    [[nodiscard]] bool isOf(const std::string& path) const;

    gps::FileSystem* files_;
    gps::OpenFile folder_;
    bool isHeldByAnother_;
};

} // namespace host
