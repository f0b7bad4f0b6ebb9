// SPDX-License-Identifier: MIT
// ConfigurationCheck: a configuration file, with all of its keys checked against the commands. For
// every program that shares the file. Reads the file. [any]

#pragma once

#include "host/commandline/Configuration.h"

#include <string>

namespace host {

/// Reads a file's keys, and finds those that no command can use.
/// @return  the first mistake with its line, for the user to read; empty if there is none
[[nodiscard]] std::string readCheckedConfiguration(Configuration& configuration);

} // namespace host
