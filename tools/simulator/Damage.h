// SPDX-License-Identifier: MIT
// Frames sentences for the wire, intact or damaged by a fault. Used by the simulator only.
// Stateless. [any]

#pragma once

#include "Fault.h"

#include <string>
#include <string_view>

namespace simulator {

/// The body that acknowledges a body.
[[nodiscard]] std::string acknowledgementOf(std::string_view body);

/// The bytes on the wire for a body: "$", the body, "*", its checksum, CR LF, or what a fault makes
/// of them.
/// @param fault  may be null. Kinds that do not damage sentences have no effect
[[nodiscard]] std::string wireForm(std::string_view body, const Fault* fault = nullptr);

} // namespace simulator
