// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/transfer/Sending.h"

namespace host {

ExitStatus runSend(const PlugInBundle& plugIn, const SendOptions& options, const Console& console)
{
    Sending sending{options, console};
    if (const auto failure = sending.open()) {
        console.error(*failure);
        return ExitStatus::kFailed;
    }
    ChosenDevice chosen;
    if (const auto failure = chooseDevice(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    return sending.run(*chosen.driver);
}

} // namespace host
