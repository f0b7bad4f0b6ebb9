// SPDX-License-Identifier: MIT
// What `acquire` and `import` share: running a download as the options say, and printing its
// report. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/operations/StopSignals.h"
#include "host/options/Options.h"
#include "host/transfer/DownloadRequest.h"
#include "host/watching/KnownRecords.h"
#include "host/words/Message.h"

#include <gps/GPSPlugInProtocol.h>

#include <functional>
#include <string>
#include <vector>

namespace host {

/// The part of a request that the options determine, without consumers and progress.
[[nodiscard]] DownloadRequest downloadRequest(const DownloadOptions& options);

/// Imports files, and the receivers' files in folders, with one operation each, into one output.
/// @param stop  ends the program until the files are known
[[nodiscard]] ExitStatus runImportOf(const PlugInBundle& plugIn, std::vector<std::string> files,
                                     const DownloadOptions& options, StopSignals& stop,
                                     const Console& console);

/// What is done when a download has ended, and what to tell the user about it.
/// @param succeeded  whether the download did
using AfterDownload = std::function<std::vector<Message>(bool succeeded)>;

/// What only a download from a device has.
struct DownloadEnvironment {
    /// What was saved before, to be left out; gets what is saved now. Null: nothing is left out.
    KnownRecords* known = nullptr;

    /// Called before the last output; an error that it returns is one of the command. May be empty.
    AfterDownload afterwards{};
};

/// Runs a download. Event lines or the summary go to the standard output, messages to standard
/// error.
/// @param stop  only requests a stop from now on, so that what has arrived is kept
[[nodiscard]] ExitStatus runDownload(gps::GPSPlugInProtocol& driver, DownloadRequest request,
                                     const DownloadOptions& options, StopSignals& stop,
                                     const Console& console,
                                     const DownloadEnvironment& environment = {});

} // namespace host
