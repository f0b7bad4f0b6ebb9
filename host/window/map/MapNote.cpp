// SPDX-License-Identifier: MIT
// The first sentence that applies: an empty map has one reason.

#include "host/window/map/MapNote.h"

#include "host/base/TranslatedFormat.h"

#include <algorithm>
#include <vector>

namespace host {
namespace {

bool isAnyTicked(const TickedRecords& ticked)
{
    const auto isAny = [](const std::vector<bool>& values) {
        return std::find(values.begin(), values.end(), true) != values.end();
    };
    return isAny(ticked.tracks) || isAny(ticked.routes) || isAny(ticked.points);
}

std::string noteOnUnseen(std::size_t count)
{
    if (count == 0)
        return {};
    return trCounted(count, "{} record has no valid coordinates and is not on the map.",
                     "{} records have no valid coordinates and are not on the map.", count);
}

std::string noteOnBeyond(std::size_t count)
{
    if (count == 0)
        return {};
    return trCounted(
        count, "{} record is nearer to a pole than this map shows, and is drawn at its edge.",
        "{} records are nearer to a pole than this map shows, and are drawn at its edge.", count);
}

} // namespace

std::string mapNote(const MapRecords* records, const TickedRecords& ticked)
{
    if (records == nullptr)
        return tr("Download from a receiver or import a file to see its records here.");
    if (records->records->isEmpty())
        return tr("There are no records to show.");
    if (records->extent.isEmpty())
        return tr("No record has valid coordinates, so there is nothing to show on the map.");
    if (!isAnyTicked(ticked))
        return tr("No record is ticked, so none is shown on the map.");
    auto note = noteOnUnseen(records->unseen);
    const auto beyond = noteOnBeyond(records->beyond);
    return note.empty() || beyond.empty() ? note + beyond : note + ' ' + beyond;
}

} // namespace host
