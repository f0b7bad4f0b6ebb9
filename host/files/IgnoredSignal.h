// SPDX-License-Identifier: MIT
// isIgnored: finds out which signals the program must not handle. [any]

#pragma once

namespace host {

/// Whether a signal is ignored, because the program was started that way: nohup does so with
/// SIGHUP, a shell without job control with SIGINT. Such a signal must not end the program.
[[nodiscard]] bool isIgnored(int signal) noexcept;

} // namespace host
