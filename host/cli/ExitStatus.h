// SPDX-License-Identifier: MIT
// ExitStatus: what the program returns to the shell. Scripts depend on the numbers.

#pragma once

namespace host {

enum class ExitStatus : int {
    kSuccess = 0,
    kFailed = 1,          ///< an operation or the output failed, or records are missing
    kUsage = 2,           ///< the command line is wrong
    kNothingToWorkOn = 3, ///< no plug-in, no driver or no device
};

/// The status of a command that a signal stopped: what shells report for a program that the signal
/// has ended.
[[nodiscard]] constexpr ExitStatus statusAfterSignal(int signal) noexcept
{
    return static_cast<ExitStatus>(128 + signal);
}

} // namespace host
