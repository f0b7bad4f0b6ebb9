// SPDX-License-Identifier: MIT
// RecordOrigin: where and when the records of an output were obtained, for the formats that have a
// place for it. A plain value.

#pragma once

#include "host/formats/PageTiles.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host {

/// The key of what a route or a track of an imported file says about its own origin.
inline constexpr char kSourceKey[] = "source";

struct RecordOrigin {
    std::string title{};      ///< of the output, for the user; empty without one
    std::string receiver{};   ///< for the user; empty if the records are not from a receiver
    std::string identifier{}; ///< of the receiver, such as a serial number; empty if not known
    /// Seconds since 1970-01-01 00:00 UTC, before the year 10000; nullopt: unknown.
    std::optional<std::int64_t> time{};
    PageTiles tiles{}; ///< not an origin of records, but of the page's map
};

} // namespace host
