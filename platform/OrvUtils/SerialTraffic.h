// SPDX-License-Identifier: MIT
// SerialTraffic: counters of all data on this process's serial ports, for a host that shows
// progress. [any]

#pragma once

#include <cstdint>

namespace gps {

/// Counts since the process started. Each counter is exact, but they are not read at the same
/// instant.
struct SerialTraffic {
    std::uint64_t bytesRead = 0;
    std::uint64_t bytesWritten = 0;
    std::uint64_t linesRead = 0; ///< texts that were read up to their terminator
    int bitsPerSecond = 0;       ///< the speed that was set last
};

/// The present counts. [any]
[[nodiscard]] SerialTraffic serialTraffic() noexcept;

} // namespace gps
