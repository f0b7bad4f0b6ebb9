// SPDX-License-Identifier: MIT
// The count changes with each tick, since counting takes long.

#include "host/records/RecordTicks.h"

#include <algorithm>
#include <utility>

namespace host {

RecordTicks::RecordTicks(const RecordSet& set) : ticked_(TickedRecords::all(set)), count_(total())
{}

RecordTicks::RecordTicks(TickedRecords ticked) : ticked_(std::move(ticked))
{
    for (const auto* const kind : {&ticked_.points, &ticked_.routes, &ticked_.tracks})
        count_ += static_cast<std::size_t>(std::count(kind->begin(), kind->end(), true));
}

bool RecordTicks::isTicked(RecordKind kind, std::size_t index) const
{
    switch (kind) {
    case RecordKind::kTrack:
        return ticked_.tracks[index];
    case RecordKind::kRoute:
        return ticked_.routes[index];
    case RecordKind::kPoint:
        break;
    }
    return ticked_.points[index];
}

void RecordTicks::tick(RecordKind kind, std::size_t index, bool isTicked)
{
    auto value = valuesOf(kind)[index];
    if (value != isTicked)
        isTicked ? ++count_ : --count_;
    value = isTicked;
}

std::vector<bool>& RecordTicks::valuesOf(RecordKind kind)
{
    switch (kind) {
    case RecordKind::kTrack:
        return ticked_.tracks;
    case RecordKind::kRoute:
        return ticked_.routes;
    case RecordKind::kPoint:
        break;
    }
    return ticked_.points;
}

} // namespace host
