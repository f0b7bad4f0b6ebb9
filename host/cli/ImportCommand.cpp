// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/transfer/Download.h"

namespace host {

ExitStatus runImport(const PlugInBundle& plugIn, const ImportOptions& options,
                     const Console& console)
{
    Driver driver;
    if (const auto failure = chooseImporter(plugIn.drivers, options.driver, driver)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    std::vector<gps::Dictionary> operations;
    for (const auto& file : options.files)
        operations.push_back(driverOptions(options, file));
    return download(*driver, operations, options, console);
}

} // namespace host
