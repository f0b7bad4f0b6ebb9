// SPDX-License-Identifier: MIT
// Compares what a device stores of a point: name, comment, symbol code, coordinates and altitude.

#include "host/transfer/DeviceRoutePoints.h"

#include "host/fitting/RecordList.h"
#include "host/points/DevicePosition.h"

#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host {
namespace {

template <typename DictionaryType, typename Visitor>
void forEachRoutePoint(DictionaryType& data, const Visitor& visit)
{
    forEachRecord(data, "route", [&](auto& route) { forEachRecord(route, "points", visit); });
}

std::string_view textIn(const gps::Dictionary& record, std::string_view key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? std::string_view{*text} : std::string_view{};
}

// Devices store whole metres and drop the rest.
bool isSamePoint(const gps::Dictionary& wanted, const gps::Dictionary& present)
{
    const auto* const a = gps::findPoint(wanted);
    const auto* const b = gps::findPoint(present);
    if (a == nullptr || b == nullptr || std::trunc(a->altitude) != std::trunc(b->altitude))
        return false;
    const auto wantedPosition = DevicePosition::of(*a);
    const auto presentPosition = DevicePosition::of(*b);
    return wantedPosition && presentPosition && wantedPosition->matches(*presentPosition);
}

// The codes that a device stores for symbols, each asked for once.
class SymbolCodes {
public:
    explicit SymbolCodes(const gps::GPSFileDevice& device) : device_(device) {}

    [[nodiscard]] bool areSame(std::string_view a, std::string_view b)
    {
        return a == b || codeOf(a) == codeOf(b);
    }

private:
    [[nodiscard]] const std::string& codeOf(std::string_view symbol)
    {
        auto known = codes_.find(symbol);
        if (known == codes_.end())
            known = codes_.emplace(symbol, device_.deviceSymbol(symbol)).first;
        return known->second;
    }

    const gps::GPSFileDevice& device_;
    std::map<std::string, std::string, std::less<>> codes_;
};

} // namespace

void useDeviceRoutePoints(gps::Dictionary& data, const gps::Dictionary& onDevice,
                          const gps::GPSFileDevice& device)
{
    // Views into `onDevice`, which does not change.
    std::unordered_multimap<std::string_view, const gps::Dictionary*> byName;
    forEachRoutePoint(onDevice, [&](const gps::Dictionary& point) {
        byName.emplace(textIn(point, "name"), &point);
    });
    SymbolCodes symbols{device};
    const auto isStoredAs = [&](const gps::Dictionary& wanted, const gps::Dictionary& present) {
        return isSamePoint(wanted, present) &&
               textIn(wanted, "comment") == textIn(present, "comment") &&
               symbols.areSame(textIn(wanted, "symbol"), textIn(present, "symbol"));
    };
    forEachRoutePoint(data, [&](gps::Dictionary& point) {
        for (auto [at, end] = byName.equal_range(textIn(point, "name")); at != end; ++at) {
            if (isStoredAs(point, *at->second)) {
                point = *at->second;
                return;
            }
        }
    });
}

} // namespace host
