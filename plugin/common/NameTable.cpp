// SPDX-License-Identifier: MIT

#include "NameTable.h"

#include <functional>

namespace magellan {
namespace {

constexpr std::size_t kFirstSlots = 256; // a power of two, as all sizes are
constexpr std::uint32_t kFree = 0xFFFFFFFF;

} // namespace

NameTable::NameTable() : slots_(kFirstSlots, kFree) {}

std::size_t NameTable::numberOf(std::string_view name)
{
    if (2 * (names_.size() + 1) > slots_.size())
        grow();
    const Name sought{name, static_cast<std::uint32_t>(std::hash<std::string_view>{}(name))};
    auto& slot = slotFor(sought);
    if (slot == kFree) {
        slot = static_cast<std::uint32_t>(names_.size());
        names_.push_back(sought);
    }
    return slot;
}

/// Where a name's number is, or where it may be put: the slot of its hash or, by turns, the next
/// one.
std::uint32_t& NameTable::slotFor(const Name& name)
{
    std::size_t i = name.hash & (slots_.size() - 1);
    while (slots_[i] != kFree &&
           !(names_[slots_[i]].hash == name.hash && names_[slots_[i]].text == name.text))
        i = (i + 1) & (slots_.size() - 1);
    return slots_[i];
}

void NameTable::grow()
{
    slots_.assign(slots_.size() * 4, kFree);
    for (std::size_t number = 0; number < names_.size(); ++number)
        slotFor(names_[number]) = static_cast<std::uint32_t>(number);
}

} // namespace magellan
