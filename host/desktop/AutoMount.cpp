// SPDX-License-Identifier: MIT
// A node exists as long as its disk is connected.

#include "host/desktop/AutoMount.h"

#include "host/bundle/Disk.h"

#include <platform/System/RemovableDisks.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace host {

AutoMount::Look AutoMount::look()
{
    Look look;
    std::error_code ignored;
    std::erase_if(known_,
                  [&](const std::string& node) { return !std::filesystem::exists(node, ignored); });
    std::set<std::string> unmounted;
    for (const auto& disk : gps::removableDisks()) {
        if (!disk.folders.empty())
            known_.insert(disk.node);
        else if (mayBeReceiver(disk) && !known_.contains(disk.node))
            unmounted.insert(disk.node);
    }
    for (const auto& node : unmounted) {
        if (!waiting_.contains(node))
            continue;
        known_.insert(node);
        if (auto failure = mounted_.mount(node))
            look.errors.push_back(*std::move(failure));
        else
            look.hasMounted = true;
    }
    waiting_ = std::move(unmounted);
    return look;
}

} // namespace host
