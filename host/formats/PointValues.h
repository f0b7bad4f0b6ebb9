// SPDX-License-Identifier: MIT
// The elevation and the time of a point, as map files write them. A point is worth having without
// them, so a text that cannot be read is handed back for a message instead of an error. Stateless.
// [any]

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace host {

/// What a point has in its file that cannot be read or counts as unknown; empty texts if there is
/// nothing.
struct UnreadTexts {
    std::string elevation{};
    std::string time{};
    std::string uncountedTime{}; ///< one that hasTimestamp() does not accept
    bool hasFraction = false;    ///< the time had a fraction of a second, which was left out

    /// Whether all texts are empty.
    [[nodiscard]] bool isEmpty() const noexcept
    {
        return elevation.empty() && time.empty() && uncountedTime.empty();
    }
};

/// Reads an elevation in metres. White space around it is ignored.
/// @param unread  gets the text if it is not an elevation as a whole, such as "12,5" or "13 m"
/// @return        a NaN for any such text, and for an empty one
[[nodiscard]] double elevationIn(std::string_view text, UnreadTexts& unread);

/// Reads a timestamp as readGpxTime() does.
/// @param unread  gets the text if it is not a timestamp, or if hasTimestamp() does not accept it
/// @return        0 for any such text, and for an empty one
[[nodiscard]] std::int64_t timeIn(std::string_view text, UnreadTexts& unread);

/// "the fractions of a second of 2 times", for a message about what was left out.
/// Precondition: there are some.
[[nodiscard]] std::string fractionsText(std::size_t times);

} // namespace host
