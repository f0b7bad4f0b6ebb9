// SPDX-License-Identifier: MIT
// A numbered name is a stem, a space and a number. The limit cuts the stem, so its length depends
// on the digits of the number: "Long name", "Long nam 2", "Long na 12".

#include "host/fitting/FreeNames.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <functional>

namespace host {
namespace {

constexpr std::size_t kMostDigits = 9;

// The length of the number that numbered() put at a name's end: 2 for "Camp 12"; 0 for "Camp",
// "Camp12" and "Camp 012", which it does not produce.
std::size_t numberLength(std::string_view name) noexcept
{
    const auto digits = static_cast<std::size_t>(
        std::find_if_not(name.rbegin(), name.rend(), gps::isDigit) - name.rbegin());
    if (digits == 0 || digits > kMostDigits || digits + 1 >= name.size())
        return 0;
    const auto start = name.size() - digits;
    return name[start - 1] == ' ' && name[start] != '0' ? digits : 0;
}

std::string keyOf(std::string_view stem, std::size_t digits)
{
    std::string key{stem};
    key += '\n'; // no name contains one
    gps::appendInteger(key, static_cast<std::int64_t>(digits));
    return key;
}

} // namespace

std::size_t FreeNames::StemHash::operator()(const Stem& stem) const noexcept
{
    constexpr std::size_t kSpread = 0x9E3779B97F4A7C15;
    const auto mixed =
        (static_cast<std::size_t>(stem.position) ^ stem.details) * kSpread + stem.digits;
    return mixed * kSpread ^ std::hash<std::string_view>{}(stem.text);
}

void FreeNames::addOnDevice(const std::string& name, const StoredRecord& record)
{
    auto& known = *names_.try_emplace(name).first;
    if (known.second.isClaimed)
        return;
    if (known.second.firstHeld == kNone)
        known.second.firstHeld = static_cast<std::uint32_t>(held_.size());
    else if (!held_[known.second.firstHeld].held.isSameOnReceiver(record))
        known.second.isAmbiguous = true;
    held_.push_back({&known, record, true});
}

void FreeNames::addPointOnDevice(const std::string& name, const StoredRecord& point)
{
    const auto& known = *names_.try_emplace(name).first;
    if (!known.second.isClaimed)
        held_.push_back({&known, point, false});
}

std::string FreeNames::claimLike(std::string_view wanted, const StoredRecord& record)
{
    fill(forRecords_, false);
    auto name = claimSentBefore(forRecords_, wanted, record, nullptr);
    return name.empty() ? claimNew(wanted) : name;
}

std::string FreeNames::claimPointLike(std::string_view wanted, const StoredRecord& point,
                                      const PointRule& isUsable)
{
    fill(forPoints_, true);
    auto name = claimSentBefore(forPoints_, wanted, point, &isUsable);
    return name.empty() ? claimNew(wanted) : name;
}

// Returns "" if the receiver holds no such name for the same record, or none of them can be used.
std::string FreeNames::claimSentBefore(Index& index, std::string_view wanted,
                                       const StoredRecord& record, const PointRule* isUsable)
{
    if (!record.position)
        return {};
    for (const auto key : record.position->matchingKeys()) {
        auto name = index.positions.contains(key)
                        ? claimAt(index, key, wanted, record.details, isUsable)
                        : std::string{};
        if (!name.empty())
            return name;
    }
    return {};
}

// A name that a rule refuses is of no use to a later point either: it belongs to another one.
std::string FreeNames::claimAt(Index& index, std::int64_t position, std::string_view wanted,
                               std::size_t details, const PointRule* isUsable)
{
    for (std::size_t digits = 0; digits <= kMostDigits && digits + 1 < longest_; ++digits) {
        const auto stem = stemOf(wanted, digits);
        const auto found = index.names.find({position, details, stem, digits});
        while (found != index.names.end() && !found->second.empty()) {
            const auto& name = *found->second.front();
            found->second.pop();
            if ((isUsable == nullptr || (*isUsable)(name)) && claim(name))
                return name;
        }
    }
    return {};
}

// A record replaces those of its name, so it must be the same as each of them. It replaces no route
// point.
bool FreeNames::isForRecords(const HeldName& held) noexcept
{
    const auto& name = held.name->second;
    return name.firstHeld == kNone || (held.isRecord && !name.isAmbiguous);
}

// Adds the names that were added since the last call.
void FreeNames::fill(Index& index, bool isForPoints)
{
    for (; index.size < held_.size(); ++index.size) {
        const auto& held = held_[index.size];
        if (!held.held.position || (!isForPoints && !isForRecords(held)))
            continue;
        const auto& name = held.name->first;
        const auto position = held.held.position->key();
        const auto details = held.held.details;
        index.positions.insert(position);
        index.names[{position, details, name, 0}].push(&name);
        if (const auto digits = numberLength(name); digits > 0) {
            const auto stem = std::string_view{name}.substr(0, name.size() - digits - 1);
            index.names[{position, details, stem, digits}].push(&name);
        }
    }
}

std::string FreeNames::claimNew(std::string_view wanted)
{
    auto name = stemOf(wanted, 0);
    if (!isFree(name))
        name = numbered(wanted);
    (void)claim(name);
    return name;
}

std::string FreeNames::numbered(std::string_view wanted)
{
    // Names with the same stem share a counter for each number of digits, so that no number is
    // tried twice.
    std::uint64_t limit = 10;
    for (std::size_t digits = 1; digits <= kMostDigits && digits + 1 < longest_;
         ++digits, limit *= 10) {
        const auto stem = stemOf(wanted, digits);
        const auto first = std::max<std::uint64_t>(limit / 10, 2);
        auto& next = nextNumber_.try_emplace(keyOf(stem, digits), first).first->second;
        while (next < limit) {
            auto name = stem + ' ' + std::to_string(next++);
            if (isFree(name))
                return name;
        }
    }
    return stemOf(wanted, 0);
}

// The part of a name before a number of so many digits. With 0 digits, the whole name, cut to the
// limit.
std::string FreeNames::stemOf(std::string_view wanted, std::size_t digits) const
{
    auto stem = wanted.substr(0, longest_ - (digits > 0 ? digits + 1 : 0));
    while (!stem.empty() && stem.back() == ' ')
        stem.remove_suffix(1);
    return std::string{stem};
}

} // namespace host
