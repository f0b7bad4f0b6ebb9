// SPDX-License-Identifier: MIT
// Entries live as long as their device is connected, so a device that comes back starts afresh.

#include "host/watching/WatchedDevices.h"

#include <algorithm>
#include <utility>

namespace host {

WatchedDevices::Changes WatchedDevices::update(const std::vector<WatchedDevice>& connected)
{
    Changes changes;
    std::vector<Entry> entries;
    for (const auto& device : connected) {
        if (std::any_of(entries.begin(), entries.end(),
                        [&](const Entry& entry) { return entry.device == device; }))
            continue;
        const auto before = find(device);
        const bool isNew = before == entries_.end();
        if (isNew)
            changes.appeared.push_back(device);
        auto& entry = entries.emplace_back(isNew ? Entry{device} : *before);
        entry.device.isReadable = device.isReadable; // permissions may change meanwhile
    }
    for (const auto& entry : entries_) {
        if (std::find(connected.begin(), connected.end(), entry.device) == connected.end())
            changes.gone.push_back(entry.device);
    }
    entries_ = std::move(entries);
    return changes;
}

std::vector<WatchedDevice> WatchedDevices::due() const
{
    std::vector<WatchedDevice> devices;
    for (const auto& entry : entries_) {
        if (!entry.isDone && entry.device.isReadable)
            devices.push_back(entry.device);
    }
    return devices;
}

bool WatchedDevices::isLastTry(const WatchedDevice& device, std::size_t mostTries) const
{
    return find(device)->failures + 1 >= mostTries;
}

void WatchedDevices::markDone(const WatchedDevice& device)
{
    entryOf(device).isDone = true;
}

bool WatchedDevices::markFailed(const WatchedDevice& device, std::size_t mostTries)
{
    auto& entry = entryOf(device);
    entry.isDone = ++entry.failures >= mostTries;
    return !entry.isDone;
}

std::vector<WatchedDevices::Entry>::const_iterator
WatchedDevices::find(const WatchedDevice& device) const
{
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return entry.device == device; });
}

WatchedDevices::Entry& WatchedDevices::entryOf(const WatchedDevice& device)
{
    return entries_[static_cast<std::size_t>(find(device) - entries_.begin())];
}

} // namespace host
