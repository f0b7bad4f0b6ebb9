// SPDX-License-Identifier: MIT

#include "host/fitting/FreeNames.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostDigits = 9;
constexpr double kCell = 1e-5; // degrees: about a metre
constexpr double kBlur = 5e-7; // degrees: what a place may be off after a device has rounded it

// How many digits the number has that was put behind a name: 2 for "Camp 12", none for "Camp",
// "Camp12" and "Camp 012".
std::size_t numberDigits(std::string_view name) noexcept
{
    const auto digits = static_cast<std::size_t>(
        std::find_if_not(name.rbegin(), name.rend(), gps::isDigit) - name.rbegin());
    if (digits == 0 || digits > kMostDigits || digits + 1 >= name.size())
        return 0;
    const auto start = name.size() - digits;
    return name[start - 1] == ' ' && name[start] != '0' ? digits : 0;
}

std::string keyOf(std::string_view front, std::size_t digits)
{
    std::string key{front};
    key += '\n'; // in no name
    gps::appendInteger(key, static_cast<std::int64_t>(digits));
    return key;
}

std::string keyOf(std::string_view front, std::size_t digits, double latitude, double longitude)
{
    auto key = keyOf(front, digits);
    for (const double degrees : {latitude, longitude}) {
        key += '\n';
        gps::appendInteger(key, std::llround(std::floor(degrees / kCell)));
    }
    return key;
}

} // namespace

void FreeNames::addOnDevice(const std::string& name, const gps::GPSPoint& place)
{
    if (!onDevice_.insert(name).second)
        return;
    // A place near a cell's edge may have been in the next cell before it was rounded: it stands in
    // both.
    std::unordered_set<std::string> keys;
    const std::size_t digits = numberDigits(name);
    for (const double north : {-kBlur, kBlur}) {
        for (const double east : {-kBlur, kBlur}) {
            keys.insert(keyOf(name, 0, place.latitude + north, place.longitude + east));
            if (digits > 0)
                keys.insert(keyOf(std::string_view{name}.substr(0, name.size() - digits - 1),
                                  digits, place.latitude + north, place.longitude + east));
        }
    }
    for (const auto& key : keys)
        atPlaces_[key].push(name);
}

std::string FreeNames::find(std::string_view wanted, const gps::GPSPoint& place)
{
    auto name = sentBefore(wanted, place);
    if (!name.empty())
        return name;
    name = front(wanted, 0);
    if (!isFree(name))
        name = numbered(wanted);
    taken_.insert(name);
    return name;
}

std::string FreeNames::sentBefore(std::string_view wanted, const gps::GPSPoint& place)
{
    if (atPlaces_.empty())
        return {};
    for (std::size_t digits = 0; digits <= kMostDigits && digits + 1 < longest_; ++digits) {
        const auto found =
            atPlaces_.find(keyOf(front(wanted, digits), digits, place.latitude, place.longitude));
        while (found != atPlaces_.end() && !found->second.empty()) {
            auto name = std::move(found->second.front());
            found->second.pop();
            if (take(name))
                return name;
        }
    }
    return {};
}

std::string FreeNames::numbered(std::string_view wanted)
{
    // Names whose fronts are equal share a count for each number of digits, so that none is tried
    // twice.
    std::uint64_t past = 10;
    for (std::size_t digits = 1; digits <= kMostDigits && digits + 1 < longest_;
         ++digits, past *= 10) {
        const auto start = front(wanted, digits);
        auto& next = next_.try_emplace(keyOf(start, digits), std::max<std::uint64_t>(past / 10, 2))
                         .first->second;
        while (next < past) {
            auto name = start + ' ' + std::to_string(next++);
            if (isFree(name))
                return name;
        }
    }
    return front(wanted, 0);
}

// What of a name stands before a number of so many digits; without digits: the name itself, cut.
std::string FreeNames::front(std::string_view wanted, std::size_t digits) const
{
    auto start = wanted.substr(0, longest_ - (digits > 0 ? digits + 1 : 0));
    while (!start.empty() && start.back() == ' ')
        start.remove_suffix(1);
    return std::string{start};
}

} // namespace host
