// SPDX-License-Identifier: MIT
// SerialTraffic: what has gone over this process's serial lines, for a host that shows progress.
// [any]

#pragma once

#include <cstdint>

namespace gps {

/// Counts since the process began. Each is right by itself; together they may be a moment apart.
struct SerialTraffic {
    std::uint64_t bytesRead = 0;
    std::uint64_t bytesWritten = 0;
    std::uint64_t linesRead = 0; ///< texts that were read up to their terminator
    int bitsPerSecond = 0;       ///< the speed that was set last
};

[[nodiscard]] SerialTraffic serialTraffic() noexcept;

} // namespace gps
