// SPDX-License-Identifier: MIT
// The folders of other devices are all that is known of them: an identifier can lose characters on
// its way to a folder's name.

#include "host/window/backups/BackupState.h"

#include "host/files/StateFolder.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

void addBackups(const std::string& folder, DeviceBackups& device)
{
    device.complete = listBackups(folder, device.identifier);
    device.damaged = listDamagedBackups(folder, device.identifier);
}

} // namespace

BackupState backupsIn(const std::string& folder, std::optional<DeviceBackups> selected)
{
    BackupState state{.folder = folder};
    auto others = listBackedUpDevices(folder);
    std::sort(others.begin(), others.end());
    if (selected) {
        std::erase(others, nameOfDevice(selected->identifier));
        addBackups(folder, *selected);
        state.devices.push_back(std::move(*selected));
    }
    for (auto& name : others) {
        DeviceBackups other{.identifier = std::move(name)};
        addBackups(folder, other);
        if (!other.complete.empty() || !other.damaged.empty())
            state.devices.push_back(std::move(other));
    }
    return state;
}

} // namespace host
