// SPDX-License-Identifier: MIT
// Signals that the program was told to live through. [any]

#pragma once

namespace host {

/// Whether whoever started the program had it ignore this signal, as nohup does with SIGHUP: then
/// it is not to end by it.
[[nodiscard]] bool isIgnored(int signal) noexcept;

} // namespace host
