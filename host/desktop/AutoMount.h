// SPDX-License-Identifier: MIT
// AutoMount: mounts the disks that appear while receivers are watched for, each of them once.
// [host thread]

#pragma once

#include "host/desktop/DiskService.h"
#include "host/desktop/MountedDisks.h"

#include <gps/Error.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace host {

class AutoMount {
public:
    /// @param service  must outlive this object
    explicit AutoMount(DiskService& service) : mounted_(service) {}

    /// What a look at the disks has brought.
    struct Look {
        bool hasMounted = false;
        std::vector<gps::Error> errors{}; ///< why disks could not be mounted
    };

    /// Mounts the disks that were unmounted at the last look already: a desktop that mounts disks
    /// by itself comes first. Disks that were mounted before are never mounted again while they
    /// stay connected, so that a user can unmount and unplug them.
    Look look();

    /// The disks that this object has mounted.
    [[nodiscard]] const std::vector<MountedDisks::Disk>& mounted() const noexcept
    {
        return mounted_.all();
    }

    /// Unmounts one of them.
    [[nodiscard]] std::optional<gps::Error> unmount(const std::string& node)
    {
        return mounted_.unmount(node);
    }

private:
    MountedDisks mounted_;
    std::set<std::string> waiting_; // nodes that are to be mounted at the next look
    std::set<std::string> known_;   // nodes that have been mounted, or could not be
};

} // namespace host
