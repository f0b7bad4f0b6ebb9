// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/transfer/Download.h"

namespace host {

ExitStatus runAcquire(const PlugInBundle& plugIn, const Options& options, const Console& console)
{
    Driver driver;
    if (const auto failure = chooseDevice(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, driver)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    return download(*driver, {driverOptions(options)}, options, console);
}

} // namespace host
