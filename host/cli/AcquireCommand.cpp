// SPDX-License-Identifier: MIT
// `acquire`: one download from the selected device, or from the files on a memory card.

#include "host/base/HostError.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DiskRelease.h"
#include "host/cli/DownloadCommand.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/desktop/DeviceDisk.h"
#include "host/desktop/UDisks.h"
#include "host/operations/StopSignals.h"
#include "host/watching/KnownRecords.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace host {
namespace {

// Replacing a file with what is new would lose what is in it: no later run saves that again.
std::optional<gps::Error> obstacleToNewOnly(const std::optional<std::string>& output,
                                            bool hasListFolder)
{
    if (!hasListFolder)
        return hostError("--new-only needs a folder to remember what was saved",
                         "Set HOME or XDG_STATE_HOME");
    std::error_code ignored;
    if (output && std::filesystem::is_regular_file(*output, ignored))
        return hostError("With --new-only the output file would be replaced by what is new",
                         "Name a file that does not exist", *output);
    return std::nullopt;
}

} // namespace

ExitStatus runAcquire(const PlugInBundle& plugIn, const AcquireOptions& options,
                      const Console& console)
{
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    if (options.card)
        return runImportOf(plugIn, {*options.card}, options, stop, console);
    const auto lists = knownRecordsFolder();
    if (options.newOnly) {
        if (const auto failure = obstacleToNewOnly(options.output, lists.has_value()))
            return refuse(options, *failure, ExitStatus::kFailed, stop, console);
    }
    UDisks disks;
    DeviceDisk disk{options.disk, disks};
    ChosenDevice chosen;
    if (const auto failure = disk.choose(
            plugIn.drivers, {options.driver, options.device, options.testFolders}, chosen))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    auto request = downloadRequest(options);
    request.location = chosen.location;
    std::optional<KnownRecords> known;
    if (options.newOnly)
        known.emplace(knownRecordsFile(*lists, identifierOf(*chosen.driver, chosen.location)));
    return runDownload(*chosen.driver, std::move(request), options, stop, console,
                       {.known = known ? &*known : nullptr, .afterwards = [&disk](bool succeeded) {
                            return releaseDisk(disk, succeeded);
                        }});
}

} // namespace host
