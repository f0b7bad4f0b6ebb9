// SPDX-License-Identifier: MIT
// The commands. Each has a source of its own; Program.cpp runs the one that was parsed. They print
// their results and return the exit status. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/options/Options.h"

#include <string_view>

namespace host {

/// `info`: describes the plug-in and its drivers.
[[nodiscard]] ExitStatus runInfo(const PlugInBundle& plugIn, const InfoOptions& options,
                                 const Console& console);

/// `devices`: lists each driver's devices; with `--watch` again after each change, until
/// interrupted.
[[nodiscard]] ExitStatus runDevices(const PlugInBundle& plugIn, const DevicesOptions& options,
                                    const Console& console);

/// `acquire`: downloads from a device.
[[nodiscard]] ExitStatus runAcquire(const PlugInBundle& plugIn, const AcquireOptions& options,
                                    const Console& console);

/// `import`: downloads from files, with one operation for each.
[[nodiscard]] ExitStatus runImport(const PlugInBundle& plugIn, const ImportOptions& options,
                                   const Console& console);

/// `open`: downloads into a page and opens it in a browser.
[[nodiscard]] ExitStatus runOpen(const PlugInBundle& plugIn, const OpenOptions& options,
                                 const Console& console);

/// `send`: backs a device up and sends files to it.
[[nodiscard]] ExitStatus runSend(const PlugInBundle& plugIn, const SendOptions& options,
                                 const Console& console);

/// `restore`: lists a device's backups, or restores one.
[[nodiscard]] ExitStatus runRestore(const PlugInBundle& plugIn, const RestoreOptions& options,
                                    const Console& console);

/// `watch`: downloads from every receiver that appears, until a signal ends it.
[[nodiscard]] ExitStatus runWatch(const PlugInBundle& plugIn, const WatchOptions& options,
                                  const Console& console);

/// The whole program: reads the command line, loads the plug-in, runs the command.
[[nodiscard]] ExitStatus runProgram(int argc, const char* const* argv);

/// Prints on the standard output. If that fails, prints the error and returns kFailed.
[[nodiscard]] ExitStatus print(std::string_view text, const Console& console);

} // namespace host
