// SPDX-License-Identifier: MIT

#include "host/watching/Presence.h"

#include <algorithm>
#include <utility>

namespace host {

Presence::Changes Presence::update(const std::vector<PresentDevice>& present)
{
    Changes changes;
    std::vector<Entry> entries;
    for (const auto& device : present) {
        if (std::any_of(entries.begin(), entries.end(),
                        [&](const Entry& entry) { return entry.device == device; }))
            continue;
        auto* const before = find(device);
        if (before == nullptr)
            changes.appeared.push_back(device);
        auto& entry = entries.emplace_back(before != nullptr ? *before : Entry{device});
        entry.device.isReadable = device.isReadable;
    }
    for (const auto& entry : entries_) {
        if (std::find(present.begin(), present.end(), entry.device) == present.end())
            changes.gone.push_back(entry.device);
    }
    entries_ = std::move(entries);
    return changes;
}

std::vector<PresentDevice> Presence::due() const
{
    std::vector<PresentDevice> devices;
    for (const auto& entry : entries_) {
        if (!entry.isDone && entry.device.isReadable)
            devices.push_back(entry.device);
    }
    return devices;
}

void Presence::done(const PresentDevice& device)
{
    find(device)->isDone = true;
}

bool Presence::failed(const PresentDevice& device, std::size_t mostTries)
{
    auto& entry = *find(device);
    entry.isDone = ++entry.tries >= mostTries;
    return !entry.isDone;
}

Presence::Entry* Presence::find(const PresentDevice& device)
{
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.device == device; });
    return found != entries_.end() ? &*found : nullptr;
}

} // namespace host
