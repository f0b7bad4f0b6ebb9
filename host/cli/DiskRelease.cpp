// SPDX-License-Identifier: MIT
// A disk that cannot be unmounted may not be unplugged, so that is an error.

#include "host/cli/DiskRelease.h"

#include "host/base/Sentences.h"

#include <utility>

namespace host {

std::vector<Message> releaseDisk(DeviceDisk& disk, bool succeeded)
{
    auto released = disk.release(succeeded);
    if (released.error)
        return {{true, sentencesOf(*released.error)}};
    if (!released.note.empty())
        return {{false, std::move(released.note)}};
    return {};
}

} // namespace host
