// SPDX-License-Identifier: MIT
// Kinds appear in the order in which a download delivers them.

#include "host/words/RecordCountText.h"

#include <fmt/format.h>

#include <string_view>

namespace host {
namespace {

std::string counted(std::size_t count, std::string_view noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

void append(std::string& text, std::size_t count, std::string_view noun)
{
    if (count > 0)
        text += (text.empty() ? "" : ", ") + counted(count, noun);
}

} // namespace

std::string recordCountText(const RecordCounts& counts)
{
    std::string text;
    append(text, counts.waypoints, "waypoint");
    append(text, counts.geocaches, "geocache");
    append(text, counts.routes, "route");
    append(text, counts.tracks, "track");
    if (counts.tracks > 0)
        text += fmt::format(" ({})", counted(counts.trackPoints, "point"));
    else
        append(text, counts.trackPoints, "track point");
    return text;
}

} // namespace host
