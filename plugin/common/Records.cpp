// SPDX-License-Identifier: MIT
// Records are copied: the extras dictionary is reused for the next sentence.

#include "Records.h"

#include <gps/GPSOutputReceiver.h>

#include <utility>

namespace magellan {

void keepByName(const gps::Dictionary& extras, const gps::GPSPoint& point, gps::Dictionary& records)
{
    const auto* name = extras.findString("name");
    if (name == nullptr)
        return;
    gps::Dictionary record;
    record.reserve(extras.size() + 1);
    record = extras;
    record.set(gps::kPointKey, point);
    records.set(*name, std::move(record));
}

void reportRoute(const gps::Dictionary& info, const gps::Array& points,
                 gps::GPSOutputReceiver& status)
{
    status.newRoute(info);
    for (const auto& element : points) {
        const auto& record = *element.as<gps::Dictionary>();
        status.wayPoint(*gps::findPoint(record), record);
    }
}

} // namespace magellan
