// SPDX-License-Identifier: MIT
// Makes tracks as a receiver records them on foot: a smooth curve through a region's stops, with a
// point every few seconds. The same walk always gives the same lines.

#pragma once

#include "sentences.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace samples {

struct Walk {
    std::vector<std::size_t> stops; ///< indices into the region's
    std::int64_t start;             ///< seconds since 1970-01-01 UTC
    std::string_view name;          ///< in each sentence, may be empty
    bool feet = false;
    bool everyDate = true; ///< each sentence carries its date
    bool firstDate = true; ///< the first sentence carries its date
};

[[nodiscard]] Lines track(const Region& region, const Walk& walk);

} // namespace samples
