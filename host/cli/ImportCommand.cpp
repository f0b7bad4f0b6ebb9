// SPDX-License-Identifier: MIT
// `import`: one download from the given files, all into one output.

#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DownloadCommand.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/cli/InputFiles.h"
#include "host/operations/StopSignals.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

ExitStatus runImport(const PlugInBundle& plugIn, const ImportOptions& options,
                     const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    Driver driver;
    if (const auto failure = chooseImporter(plugIn.drivers, options.driver, driver))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    // Event lines show what the driver does with any file.
    if (const auto failure =
            options.events ? std::nullopt
                           : checkImport(options.files,
                                         driver->fileTypes().value_or(std::vector<std::string>{})))
        return refuse(options, *failure, ExitStatus::kFailed, stop, console);
    auto request = downloadRequest(options);
    request.sourceFiles = options.files;
    return runDownload(*driver, std::move(request), options, stop, console);
}

} // namespace host
