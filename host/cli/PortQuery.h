// SPDX-License-Identifier: MIT
// The query behind `devices --ask`: which model and firmware the receivers on serial ports are.
// [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/options/Options.h"

namespace host {

/// Asks the receiver at the named port, or at each port that may be asked without being named. Each
/// driver keeps what it learns for its deviceDescription(), and the device that was selected in it.
/// Prints why a receiver does not answer.
/// @return  kFailed if one does not; that of a signal if one has ended the query
[[nodiscard]] ExitStatus askPorts(const PlugInBundle& plugIn, const DevicesOptions& options,
                                  const Console& console);

} // namespace host
