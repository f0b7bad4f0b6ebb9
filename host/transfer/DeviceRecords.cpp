// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceRecords.h"

#include "host/fitting/RecordList.h"

#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host {
namespace {

// Half of what a device's five decimals of a minute can tell apart, in degrees, and a little for
// the arithmetic.
constexpr double kSamePlace = 0.5e-5 / 60 * 1.01;

template <typename DictionaryType, typename Visitor>
void forEachRoutePoint(DictionaryType& data, const Visitor& visit)
{
    forEachRecord(data, "route", [&](auto& route) { forEachRecord(route, "points", visit); });
}

std::string textIn(const gps::Dictionary& record, std::string_view key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? *text : std::string{};
}

bool isSamePlace(const gps::Dictionary& wanted, const gps::Dictionary& present)
{
    const auto* const a = gps::findPoint(wanted);
    const auto* const b = gps::findPoint(present);
    return a != nullptr && b != nullptr && std::abs(a->latitude - b->latitude) <= kSamePlace &&
           std::abs(a->longitude - b->longitude) <= kSamePlace &&
           std::trunc(a->altitude) == std::trunc(b->altitude);
}

} // namespace

void useRecordsOfDevice(gps::Dictionary& data, const gps::Dictionary& onDevice,
                        const gps::GPSFileDevice& device)
{
    std::unordered_multimap<std::string, const gps::Dictionary*> byName;
    forEachRoutePoint(onDevice, [&](const gps::Dictionary& point) {
        byName.emplace(textIn(point, "name"), &point);
    });
    const auto isWrittenAs = [&](const gps::Dictionary& wanted, const gps::Dictionary& present) {
        return isSamePlace(wanted, present) &&
               textIn(wanted, "comment") == textIn(present, "comment") &&
               device.deviceSymbol(textIn(wanted, "symbol")) ==
                   device.deviceSymbol(textIn(present, "symbol"));
    };
    forEachRoutePoint(data, [&](gps::Dictionary& point) {
        for (auto [at, end] = byName.equal_range(textIn(point, "name")); at != end; ++at) {
            if (isWrittenAs(point, *at->second)) {
                point = *at->second;
                return;
            }
        }
    });
}

} // namespace host
