// SPDX-License-Identifier: MIT
// A numbered name is a stem, a space and a number. The limit cuts the stem, so its length depends
// on the digits of the number: "Long name", "Long nam 2", "Long na 12".

#include "host/fitting/FreeNames.h"

#include "host/points/DevicePosition.h"

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

void FreeNames::addOnDevice(const std::string& name, const gps::GPSPoint& point)
{
    if (!isClaimed_.contains(name))
        add(name, point, kAnyDetails);
}

void FreeNames::addOnDevice(const std::string& name, const gps::GPSPoint& point,
                            std::size_t details)
{
    addOnDevice(name, point);
    add(name, point, details);
}

void FreeNames::add(const std::string& name, const gps::GPSPoint& point, std::size_t details)
{
    const auto known = isClaimed_.try_emplace(name, false).first;
    if (const auto position = DevicePosition::of(point))
        unindexed_.push_back({position->key(), &known->first, details});
}

std::string FreeNames::claimLike(std::string_view wanted, const gps::GPSPoint& point,
                                 const RoutePointRule* rule)
{
    indexPositions();
    auto name = rule != nullptr ? claimSentBefore(wanted, point, rule->details, rule) : "";
    if (name.empty())
        name = claimSentBefore(wanted, point, kAnyDetails, rule);
    if (!name.empty())
        return name;
    name = stemOf(wanted, 0);
    if (!isFree(name))
        name = numbered(wanted);
    (void)claim(name);
    return name;
}

// Returns "" if the receiver holds no such name at the position, or none of them can be used.
std::string FreeNames::claimSentBefore(std::string_view wanted, const gps::GPSPoint& point,
                                       std::size_t details, const RoutePointRule* rule)
{
    const auto position = DevicePosition::of(point);
    if (!position)
        return {};
    for (const auto key : position->matchingKeys()) {
        auto name = positions_.contains(key) ? claimAt(key, wanted, details, rule) : std::string{};
        if (!name.empty())
            return name;
    }
    return {};
}

// A name that a rule refuses is of no use to a later point either: the point that it belongs to has
// found it by its details.
std::string FreeNames::claimAt(std::int64_t position, std::string_view wanted, std::size_t details,
                               const RoutePointRule* rule)
{
    for (std::size_t digits = 0; digits <= kMostDigits && digits + 1 < longest_; ++digits) {
        const auto stem = stemOf(wanted, digits);
        const auto found = namesAt_.find({position, stem, digits, details});
        while (found != namesAt_.end() && !found->second.empty()) {
            const auto& name = *found->second.front();
            found->second.pop();
            if ((rule == nullptr || rule->isUsable(name)) && claim(name))
                return name;
        }
    }
    return {};
}

// Indexes the names that were added since the last call.
void FreeNames::indexPositions()
{
    for (const auto& [position, name, details] : std::exchange(unindexed_, {})) {
        positions_.insert(position);
        namesAt_[{position, *name, 0, details}].push(name);
        if (const auto digits = numberLength(*name); digits > 0) {
            const auto stem = std::string_view{*name}.substr(0, name->size() - digits - 1);
            namesAt_[{position, stem, digits, details}].push(name);
        }
    }
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
