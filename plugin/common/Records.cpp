// SPDX-License-Identifier: MIT
// Records are copied: the extras dictionary is reused for the next sentence.

#include "Records.h"

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

const gps::Array& pointsOf(const gps::Dictionary& record)
{
    static const auto& empty = *new gps::Array;
    const auto* points = record.findArray("points");
    return points != nullptr ? *points : empty;
}

} // namespace magellan
