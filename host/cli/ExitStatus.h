// SPDX-License-Identifier: MIT
// What the program tells the shell. The one place that fixes the numbers.

#pragma once

namespace host {

enum class ExitStatus : int {
    kSuccess = 0,
    kFailed = 1,          ///< an operation or the output failed, or something is missing
    kUsage = 2,           ///< the command line is wrong
    kNothingToWorkOn = 3, ///< no plug-in, no driver or no device
};

} // namespace host
