// SPDX-License-Identifier: MIT
// How what the host keeps of a device is named: by the device and the time, below the user's state
// folder. Stateless: [any] thread.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The program's own folder below $XDG_STATE_HOME, or else below ~/.local/state; none without a
/// home.
[[nodiscard]] std::optional<std::string> stateFolder();

/// A device's identifier as a file's name: letters, digits and "-" as they are, "_" for anything
/// else, at most 64 characters; "device" for an empty one.
[[nodiscard]] std::string nameOfDevice(std::string_view identifier);

/// The present time as YYYYMMDDTHHMMSSZ, in UTC.
[[nodiscard]] std::string nameOfNow();

} // namespace host
