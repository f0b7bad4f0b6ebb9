// SPDX-License-Identifier: MIT
// `acquire`: one download from the selected device, or from the files on a memory card.

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DiskRelease.h"
#include "host/cli/DownloadCommand.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/desktop/DeviceDisk.h"
#include "host/desktop/UDisks.h"
#include "host/operations/StopSignals.h"

#include <utility>

namespace host {

ExitStatus runAcquire(const PlugInBundle& plugIn, const AcquireOptions& options,
                      const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    if (options.card)
        return runImportOf(plugIn, {*options.card}, options, stop, console);
    UDisks disks;
    DeviceDisk disk{options.disk, disks};
    ChosenDevice chosen;
    if (const auto failure = disk.choose(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    auto request = downloadRequest(options);
    request.location = chosen.location;
    return runDownload(*chosen.driver, std::move(request), options, stop, console,
                       [&disk](bool succeeded) { return releaseDisk(disk, succeeded); });
}

} // namespace host
