// SPDX-License-Identifier: MIT
// Errors as sentences for people, the same wherever a front end shows them. Stateless. [any]

#pragma once

#include <gps/Error.h>

#include <string>

namespace host {

/// An error as full sentences on one line: its description, its recovery suggestion and its path.
/// Without a description, its code and domain.
[[nodiscard]] std::string sentencesOf(const gps::Error& error);

} // namespace host
