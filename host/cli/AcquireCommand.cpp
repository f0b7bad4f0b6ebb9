// SPDX-License-Identifier: MIT
// `acquire`: one download from the selected device.

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DownloadCommand.h"

#include <utility>

namespace host {

ExitStatus runAcquire(const PlugInBundle& plugIn, const AcquireOptions& options,
                      const Console& console)
{
    ChosenDevice chosen;
    if (const auto failure = chooseDevice(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    auto request = downloadRequest(options);
    request.location = chosen.location;
    return runDownload(*chosen.driver, std::move(request), options, console);
}

} // namespace host
