// SPDX-License-Identifier: MIT
// A small volume in memory that only this process sees. Needs root's privileges; tests without
// them are skipped.

#pragma once

#include <string>

#include <sched.h>
#include <sys/mount.h>

namespace support {

class PrivateMount {
public:
    /// @param options  as mount(8) takes them, "size=64k"
    PrivateMount(std::string folder, const char* options, unsigned long flags = 0)
        : folder_(std::move(folder))
    {
        mounted_ = hasOwnTable() && ::mount("tmpfs", folder_.c_str(), "tmpfs", flags, options) == 0;
    }
    ~PrivateMount()
    {
        if (mounted_)
            ::umount2(folder_.c_str(), MNT_DETACH);
    }
    PrivateMount(const PrivateMount&) = delete;
    PrivateMount& operator=(const PrivateMount&) = delete;

    [[nodiscard]] bool isMounted() const { return mounted_; }

private:
    /// Gives the process its own mount table once, however many mounts follow.
    static bool hasOwnTable()
    {
        static const bool own = ::unshare(CLONE_NEWNS) == 0 &&
                                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        return own;
    }

    std::string folder_;
    bool mounted_ = false;
};

} // namespace support
