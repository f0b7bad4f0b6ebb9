// SPDX-License-Identifier: MIT
// How far a transfer is, in words, for every front end. Stateless. [any]

#pragma once

#include "host/transfer/TransferProgress.h"

#include <cstdint>
#include <string>

namespace host {

/// One line without a line end, short enough for 80 columns.
[[nodiscard]] std::string progressText(const TransferProgress& progress);

/// "999 bytes", "1.2 kB", "5.4 MB"
[[nodiscard]] std::string byteText(std::uint64_t count);

} // namespace host
