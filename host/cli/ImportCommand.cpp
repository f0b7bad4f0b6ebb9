// SPDX-License-Identifier: MIT
// `import`: one download from the given files and folders, all into one output.

#include "host/cli/Commands.h"
#include "host/cli/DownloadCommand.h"
#include "host/cli/EarlyStop.h"
#include "host/operations/StopSignals.h"

namespace host {

ExitStatus runImport(const PlugInBundle& plugIn, const ImportOptions& options,
                     const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    return runImportOf(plugIn, options.files, options, stop, console);
}

} // namespace host
