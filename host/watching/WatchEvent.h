// SPDX-License-Identifier: MIT
// WatchEvent: what happens while receivers are watched for, as values that a front end puts into
// words. [host thread]

#pragma once

#include "host/transfer/DownloadReport.h"
#include "host/watching/WatchedDevices.h"

#include <gps/Error.h>

#include <functional>
#include <optional>

namespace host {

struct WatchEvent {
    enum class Kind {
        kStarted,
        kDriverMissing, ///< no driver has the requested name so far; one may come with a port
        kAppeared,
        kGone,
        kListUnusable, ///< `error`: why the device's list of saved records is damaged or cannot be
                       ///< read; everything counts as new
        kDownloaded,   ///< a download has ended, with or without success
        kNotMounted,   ///< `error`: why a disk cannot be mounted
        kUnmounted,    ///< the device's disk, which was mounted for it; or why not: `error`
    };

    Kind kind = Kind::kStarted;
    WatchedDevice device{}; ///< of all but kStarted, kDriverMissing, kNotMounted

    DownloadReport report{};           ///< kDownloaded
    std::optional<gps::Error> error{}; ///< what went wrong outside of the download
    bool isRetried = false;            ///< kDownloaded: another try follows after a failure
};

/// Returns whether to go on watching.
using WatchCallback = std::function<bool(const WatchEvent& event)>;

} // namespace host
