// SPDX-License-Identifier: MIT
// What the receiver says, byte by byte: sentences whole and damaged, acknowledgements right and
// wrong. Private to this room. [any]

#pragma once

#include "Fault.h"

#include <string>
#include <string_view>

namespace simulator {

/// The body that acknowledges a body.
[[nodiscard]] std::string acknowledgementOf(std::string_view body);

/// What goes over the wire for a body: "$", the body, "*", its checksum, CR LF, or what a fault
/// makes of it.
/// @param fault  may be null; not every kind changes a sentence
[[nodiscard]] std::string wireForm(std::string_view body, const Fault* fault = nullptr);

} // namespace simulator
