// SPDX-License-Identifier: MIT
// MountedDisks: the disks that this program has mounted, which it unmounts again. [host thread]

#pragma once

#include "host/desktop/DiskService.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

class MountedDisks {
public:
    struct Disk {
        std::string node;
        std::string folder;
    };

    /// @param service  must outlive this object
    explicit MountedDisks(DiskService& service) : service_(service) {}

    /// Unmounts the disks that are left. Use unmount() to learn of failures.
    ~MountedDisks();
    MountedDisks(const MountedDisks&) = delete;
    MountedDisks& operator=(const MountedDisks&) = delete;

    [[nodiscard]] const std::vector<Disk>& all() const noexcept { return disks_; }

    /// Mounts a disk, as the last one in the list.
    [[nodiscard]] std::optional<gps::Error> mount(const std::string& node);

    /// Unmounts a disk. It is not in the list any more, even if that fails.
    /// Precondition: it is in the list.
    [[nodiscard]] std::optional<gps::Error> unmount(const std::string& node);

private:
    DiskService& service_;
    std::vector<Disk> disks_;
};

} // namespace host
