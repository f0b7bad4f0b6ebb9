// SPDX-License-Identifier: MIT
// NameTable: numbers names in the order in which they first come. What a file of a hundred thousand waypoints is gone through
// with, so it keeps views of the names, four words each, and allocates nothing for a name. Not for two threads at once.

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
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = kFree;
    };
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    [[nodiscard]] Slot& slotFor(std::string_view name, std::uint32_t hash);
    void grow();

    std::vector<std::string_view> names_;
    std::vector<Slot> slots_; // open addressing with linear probing, at most half full; as many as a power of two
};

} // namespace magellan
