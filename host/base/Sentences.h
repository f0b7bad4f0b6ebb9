// SPDX-License-Identifier: MIT
// Puts errors into sentences, the same ones in every front end. Stateless. [any]

#pragma once

#include <gps/Error.h>

#include <string>

namespace host {

/// An error as full sentences on one line: its description, its recovery suggestion and its path.
/// If it has no description, its code and domain take the description's place.
[[nodiscard]] std::string sentencesOf(const gps::Error& error);

} // namespace host
