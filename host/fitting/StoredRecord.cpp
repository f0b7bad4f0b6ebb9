// SPDX-License-Identifier: MIT
// The positions of a route's later points are part of the hash, without the tolerance of the first
// one: what a receiver reads back has exactly the position that it was sent.

#include "host/fitting/StoredRecord.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"

#include <gps/Geocache.h>

#include <span>

namespace host {
namespace {

// Every text of a geocache but its name.
constexpr auto kHashedTexts = std::span{gps::kGeocacheKeys}.subspan<1>();

class Hash {
public:
    void add(std::size_t number) noexcept
    {
        constexpr std::size_t kSpread = 0x9E3779B97F4A7C15;
        value_ = (value_ ^ number) * kSpread;
        value_ ^= value_ >> 32;
    }
    void add(std::string_view text) noexcept { add(std::hash<std::string_view>{}(text)); }

    [[nodiscard]] std::size_t value() const noexcept { return value_; }

private:
    std::size_t value_ = 0;
};

// A record's own point; one without coordinates if it has none.
gps::GPSPoint pointOf(const gps::Dictionary& record)
{
    const auto* const point = gps::findPoint(record);
    return point != nullptr ? *point : gps::GPSPoint{};
}

std::optional<DevicePosition> positionOf(const gps::Dictionary& record)
{
    const auto* const point = gps::findPoint(record);
    return point != nullptr ? DevicePosition::of(*point) : std::nullopt;
}

void addAltitude(const gps::Dictionary& record, Hash& hash)
{
    hash.add(std::hash<double>{}(deviceAltitude(pointOf(record)))); // the same for 0 and -0
}

} // namespace

StoredRecord storedWaypoint(const gps::Dictionary& record, const SymbolCode& code)
{
    Hash hash;
    addAltitude(record, hash);
    const auto symbol = textIn(record, "symbol");
    if (code)
        hash.add(code(symbol));
    else
        hash.add(symbol);
    hash.add(textIn(record, "comment"));
    return {positionOf(record), hash.value()};
}

StoredRecord storedGeocache(const gps::Dictionary& record)
{
    Hash hash;
    addAltitude(record, hash);
    for (const auto key : kHashedTexts)
        hash.add(textIn(record, key));
    return {positionOf(record), hash.value()};
}

StoredRecord storedRoute(const gps::Dictionary& record, const SymbolCode& code)
{
    StoredRecord route;
    Hash hash;
    hash.add(textIn(record, "comment"));
    bool isStored = true;
    std::size_t count = 0;
    forEachRecord(record, "points", [&](const gps::Dictionary& element) {
        const auto point = storedWaypoint(element, code);
        hash.add(point.details);
        hash.add(textIn(element, "name"));
        isStored = isStored && point.position.has_value();
        if (count++ == 0)
            route.position = point.position;
        else if (point.position)
            hash.add(static_cast<std::size_t>(point.position->key()));
    });
    if (!isStored)
        route.position.reset();
    route.details = hash.value();
    return route;
}

} // namespace host
