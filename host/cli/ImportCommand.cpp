// SPDX-License-Identifier: MIT

#include "host/cli/Commands.h"

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Download.h"

namespace host {

ExitStatus runImport(const PlugInBundle& plugIn, const Options& options, const Console& console)
{
    Driver driver;
    if (const auto failure = chooseImporter(plugIn.drivers, options.driver, driver)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    Download download{options, console};
    if (const auto failure = download.open()) {
        console.error(*failure);
        return ExitStatus::kFailed;
    }
    for (const auto& file : options.files)
        download.run(*driver, driverOptions(options, file));
    return download.finish();
}

} // namespace host
