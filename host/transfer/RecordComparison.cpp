// SPDX-License-Identifier: MIT
// A missing text and an empty one are the same to a device.

#include "host/transfer/RecordComparison.h"

#include "host/base/RecordText.h"
#include "host/points/DevicePosition.h"

#include <gps/Geocache.h>

#include <algorithm>

namespace host {
namespace {

bool haveSameText(const gps::Dictionary& a, const gps::Dictionary& b, std::string_view key)
{
    return textIn(a, key) == textIn(b, key);
}

bool haveSamePoint(const gps::Dictionary& a, const gps::Dictionary& b)
{
    const auto* const first = gps::findPoint(a);
    const auto* const second = gps::findPoint(b);
    return first != nullptr && second != nullptr && isSameOnDevice(*first, *second);
}

// Compares the points of two routes one by one.
template <typename Compare>
bool arePointsSame(const gps::Dictionary& a, const gps::Dictionary& b, const Compare& areSame)
{
    const auto* const first = a.findArray("points");
    const auto* const second = b.findArray("points");
    if (first == nullptr || second == nullptr)
        return false;
    return std::equal(first->begin(), first->end(), second->begin(), second->end(),
                      [&areSame](const gps::Value& one, const gps::Value& other) {
                          const auto* const point = one.as<gps::Dictionary>();
                          const auto* const present = other.as<gps::Dictionary>();
                          return point != nullptr && present != nullptr &&
                                 areSame(*point, *present);
                      });
}

} // namespace

bool RecordComparison::areSameWaypoints(const gps::Dictionary& a, const gps::Dictionary& b)
{
    return haveSameText(a, b, "name") && areSamePoints(a, b);
}

bool RecordComparison::areSamePoints(const gps::Dictionary& a, const gps::Dictionary& b)
{
    return haveSamePoint(a, b) && haveSameText(a, b, "comment") &&
           areSameSymbols(textIn(a, "symbol"), textIn(b, "symbol"));
}

bool RecordComparison::areSameGeocaches(const gps::Dictionary& a, const gps::Dictionary& b)
{
    return haveSamePoint(a, b) &&
           std::all_of(gps::kGeocacheKeys.begin(), gps::kGeocacheKeys.end(),
                       [&](std::string_view key) { return haveSameText(a, b, key); });
}

bool RecordComparison::areSameRoutes(const gps::Dictionary& a, const gps::Dictionary& b)
{
    return haveSameText(a, b, "name") && haveSameText(a, b, "comment") &&
           arePointsSame(a, b, [this](const gps::Dictionary& one, const gps::Dictionary& other) {
               return areSameWaypoints(one, other);
           });
}

bool RecordComparison::areSameButForPointNames(const gps::Dictionary& a, const gps::Dictionary& b)
{
    return haveSameText(a, b, "name") && haveSameText(a, b, "comment") &&
           arePointsSame(a, b, [this](const gps::Dictionary& one, const gps::Dictionary& other) {
               return areSamePoints(one, other);
           });
}

bool RecordComparison::areSameSymbols(std::string_view a, std::string_view b)
{
    return a == b || codeOf(a) == codeOf(b);
}

const std::string& RecordComparison::codeOf(std::string_view symbol)
{
    auto known = codes_.find(symbol);
    if (known == codes_.end())
        known = codes_.emplace(symbol, device_.deviceSymbol(symbol)).first;
    return known->second;
}

} // namespace host
