// SPDX-License-Identifier: MIT
// The time of a geocache is when it was placed, which has a field of its own, so only its altitude
// can be lost.

#include "LostFields.h"

#include "../common/Records.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <cmath>
#include <cstddef>
#include <string_view>

namespace magellan {
namespace {

struct LossCounts {
    std::size_t names = 0;
    std::size_t times = 0;
    std::size_t unwritableTimes = 0;
    std::size_t altitudes = 0;
};

void countPoint(const gps::Dictionary& record, LossCounts& counts)
{
    const auto* const point = gps::findPoint(record);
    if (point == nullptr)
        return;
    if (point->time != 0) {
        ++counts.times;
        counts.unwritableTimes += gps::NMEAUtils::hasNMEADate(point->time) ? 0U : 1U;
    }
    counts.altitudes += std::isnan(point->altitude) ? 1U : 0U;
}

void countPoints(const gps::Dictionary& record, LossCounts& counts)
{
    for (const auto& element : pointsOf(record)) {
        if (const auto* const point = element.as<gps::Dictionary>())
            countPoint(*point, counts);
    }
}

bool hasPoints(RecordKind kind) noexcept
{
    return kind == RecordKind::kTracks || kind == RecordKind::kRoutes;
}

bool hasName(const gps::Dictionary& record)
{
    const auto* const name = record.findString("name");
    return name != nullptr && !name->empty();
}

} // namespace

void countLostFields(const SendJob& job, std::vector<gps::LostField>& lost)
{
    LossCounts counts;
    for (const auto& element : job.records()) {
        const auto* const record = element.as<gps::Dictionary>();
        if (record == nullptr)
            continue;
        counts.names += hasName(*record) ? 1U : 0U;
        hasPoints(job.kind) ? countPoints(*record, counts) : countPoint(*record, counts);
    }
    const auto add = [&](std::string_view field, std::size_t records) {
        if (records > 0)
            lost.push_back({nameOf(job.kind), field, records});
    };
    if (job.kind == RecordKind::kTracks) {
        add("name", counts.names);
        add("time", counts.unwritableTimes);
    }
    if (job.kind == RecordKind::kWaypoints || job.kind == RecordKind::kRoutes)
        add("time", counts.times);
    add("altitude", counts.altitudes);
}

} // namespace magellan
