// SPDX-License-Identifier: MIT
// NameTable: numbers names in the order in which they first come. What a file of a hundred thousand
// waypoints is gone through with, so it keeps views of the names, and allocates nothing for a name.
// Not for two threads at once.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace magellan {

class NameTable {
public:
    NameTable();

    /// The number of a name: 0 for the first, and for each new one the next.
    /// Precondition: the text behind the view outlives the table.
    [[nodiscard]] std::size_t numberOf(std::string_view name);

private:
    struct Name {
        std::string_view text;
        std::uint32_t hash;
    };

    [[nodiscard]] std::uint32_t& slotFor(const Name& name);
    void grow();

    std::vector<Name> names_;
    std::vector<std::uint32_t>
        slots_; // numbers, by the names' hashes; small, so that they stay in a cache
};

} // namespace magellan
