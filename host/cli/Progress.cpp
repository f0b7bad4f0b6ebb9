// SPDX-License-Identifier: MIT

#include "host/cli/Progress.h"

#include <cstdio>

#include "host/operations/Operation.h"

namespace host {

static constexpr std::chrono::milliseconds kPause{100};

void Progress::show(const EventBatch& batch)
{
    if (!isShown_)
        return;
    for (const auto& event : batch) {
        if (event.kind == EventKind::kStartTransfer) {
            kind_ = event.transfer;
            points_ = 0;
        }
        points_ += event.kind == EventKind::kTrackPoint || event.kind == EventKind::kWayPoint ? 1 : 0;
    }
    if (const auto now = std::chrono::steady_clock::now(); now >= next_) {
        next_ = now + kPause;
        std::fprintf(stderr, "\r\033[K%s: %zu points", std::string{kindName(kind_)}.c_str(), points_);
    }
}

void Progress::clear() const
{
    if (isShown_)
        std::fputs("\r\033[K", stderr);
}

} // namespace host
