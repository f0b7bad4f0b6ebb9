// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/transfer/Download.h"

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
    return download(*chosen.driver, {driverOptions(options)}, options, console);
}

} // namespace host
