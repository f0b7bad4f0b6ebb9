// SPDX-License-Identifier: MIT
// What is said of a send or a restore that the user has stopped. Stateless. [any]

#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace host {

/// What is said if nothing was written.
/// @param work  "send" or "restore"
[[nodiscard]] inline std::string stoppedEarlyText(std::string_view work)
{
    return fmt::format(
        "The {} was stopped before anything was written: every file of the device is as it was.",
        work);
}

} // namespace host
