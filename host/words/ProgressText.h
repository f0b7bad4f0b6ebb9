// SPDX-License-Identifier: MIT
// How far a transfer is, in words, for every front end. Stateless. [any]

#pragma once

#include "host/transfer/TransferProgress.h"

#include <string>

namespace host {

/// One line without a line end, short enough for 80 columns.
[[nodiscard]] std::string progressText(const TransferProgress& progress);

} // namespace host
