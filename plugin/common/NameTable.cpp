// SPDX-License-Identifier: MIT

#include "NameTable.h"

#include <functional>
#include <utility>

namespace magellan {
namespace {

constexpr std::size_t kFirstSlots = 256;

} // namespace

NameTable::NameTable() : slots_(kFirstSlots) {}

std::size_t NameTable::numberOf(std::string_view name)
{
    if (2 * (names_.size() + 1) > slots_.size())
        grow();
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>{}(name));
    Slot& slot = slotFor(name, hash);
    if (slot.number == kFree) {
        slot = {hash, static_cast<std::uint32_t>(names_.size())};
        names_.push_back(name);
    }
    return slot.number;
}

/// Where a name is, or where it may be put.
NameTable::Slot& NameTable::slotFor(std::string_view name, std::uint32_t hash)
{
    std::size_t i = hash & (slots_.size() - 1);
    while (slots_[i].number != kFree && !(slots_[i].hash == hash && names_[slots_[i].number] == name))
        i = (i + 1) & (slots_.size() - 1);
    return slots_[i];
}

void NameTable::grow()
{
    const auto before = std::exchange(slots_, std::vector<Slot>(slots_.size() * 4));
    for (const auto& slot : before) {
        if (slot.number != kFree)
            slotFor(names_[slot.number], slot.hash) = slot;
    }
}

} // namespace magellan
