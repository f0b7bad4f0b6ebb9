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

NameTable::Name::Name(std::string_view name) noexcept
    : text(name.data()), length(static_cast<std::uint32_t>(name.size())),
      hash(static_cast<std::uint32_t>(std::hash<std::string_view>{}(name)))
{}

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
    const Name sought{name};
    auto& slot = slots_[slotFor(sought)];
    if (slot == kFree) {
        slot = static_cast<std::uint32_t>(names_.size());
        names_.push_back(sought);
    }
    return slot;
}

std::optional<std::size_t> NameTable::find(std::string_view name) const
{
    const auto index = slots_[slotFor(Name{name})];
    return index != kFree ? std::optional<std::size_t>{index} : std::nullopt;
}

/// Returns the slot that holds the name's index, or the free slot where it belongs.
std::size_t NameTable::slotFor(const Name& name) const
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = name.hash & mask;
    while (slots_[i] != kFree && names_[slots_[i]] != name)
        i = (i + 1) & mask;
    return i;
}

void NameTable::grow()
{
    slots_.assign(slots_.size() * kGrowth, kFree);
    for (std::size_t index = 0; index < names_.size(); ++index)
        slots_[slotFor(names_[index])] = static_cast<std::uint32_t>(index);
}

} // namespace magellan
