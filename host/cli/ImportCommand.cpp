// SPDX-License-Identifier: MIT
// `import`: one download from the given files, all into one output.

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DownloadCommand.h"

#include <utility>

namespace host {

ExitStatus runImport(const PlugInBundle& plugIn, const ImportOptions& options,
                     const Console& console)
{
    Driver driver;
    if (const auto failure = chooseImporter(plugIn.drivers, options.driver, driver)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    auto request = downloadRequest(options);
    request.sourceFiles = options.files;
    return runDownload(*driver, std::move(request), options, console);
}

} // namespace host
