// SPDX-License-Identifier: MIT
// Open addressing with linear probing. The table is at most half full, so probes are short.

#include "NameTable.h"

#include <functional>

namespace magellan {
namespace {

constexpr std::size_t kInitialSlots = 256; // sizes are powers of two, so that a mask replaces "%"
constexpr std::size_t kGrowth = 4;
constexpr std::uint32_t kFree = 0xFFFFFFFF;

} // namespace

bool NameTable::Name::operator==(const Name& other) const noexcept
{
    return hash == other.hash &&
           std::string_view{text, length} == std::string_view{other.text, other.length};
}

NameTable::NameTable() : slots_(kInitialSlots, kFree) {}

std::size_t NameTable::indexOf(std::string_view name)
{
    if (2 * (names_.size() + 1) > slots_.size())
        grow();
    const Name sought{name.data(), static_cast<std::uint32_t>(name.size()),
                      static_cast<std::uint32_t>(std::hash<std::string_view>{}(name))};
    auto& slot = slotFor(sought);
    if (slot == kFree) {
        slot = static_cast<std::uint32_t>(names_.size());
        names_.push_back(sought);
    }
    return slot;
}

/// Returns the slot that holds the name's index, or the free slot where it belongs.
std::uint32_t& NameTable::slotFor(const Name& name)
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = name.hash & mask;
    while (slots_[i] != kFree && names_[slots_[i]] != name)
        i = (i + 1) & mask;
    return slots_[i];
}

void NameTable::grow()
{
    slots_.assign(slots_.size() * kGrowth, kFree);
    for (std::size_t index = 0; index < names_.size(); ++index)
        slotFor(names_[index]) = static_cast<std::uint32_t>(index);
}

} // namespace magellan
