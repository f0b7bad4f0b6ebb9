// SPDX-License-Identifier: MIT
// Counts what a merge keeps, and subtracts that from all lines.

#include "DroppedLines.h"

#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/WayPointSentence.h"
#include "../common/LineAccounts.h"
#include "../common/Lines.h"
#include "../common/NameTable.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace magellan {
namespace {

class KeptLines {
public:
    void add(std::string_view body)
    {
        if (const auto point = SentenceFields::ofBody(body, kWayPointSentence))
            addName(wayPointName(*point));
        else if (const auto route = SentenceFields::ofBody(body, kRouteSentence))
            addRouteLine(*route);
    }

    [[nodiscard]] std::size_t count() const
    {
        auto lines = names_.size();
        for (const auto& [name, linesOfRoute] : routes_)
            lines += linesOfRoute;
        return lines;
    }

private:
    void addName(const std::optional<std::string_view>& name)
    {
        if (name)
            (void)names_.indexOf(*name);
    }

    // As readRoute() does: a route ends with the sentence that has the number of the last one.
    void addRouteLine(const SentenceFields& fields)
    {
        const auto position = routePosition(fields);
        ++linesOfRoute_;
        if (position.number != position.total)
            return;
        routes_[position.name] = linesOfRoute_;
        linesOfRoute_ = 0;
    }

    NameTable names_;
    std::unordered_map<std::string_view, std::size_t> routes_; // lines of the last one by name
    std::size_t linesOfRoute_ = 0;                             // of the route that is not complete
};

} // namespace

std::size_t droppedLines(const gps::LineAccount& account) noexcept
{
    return account.seen - account.accepted;
}

std::size_t droppedRouteLines(std::string_view present)
{
    KeptLines kept;
    std::size_t lines = 0;
    forEachLine(present, [&](std::string_view line) {
        const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
        if (line.empty() || (body && isProtocolSentence(*body)))
            return;
        ++lines;
        if (body)
            kept.add(*body);
    });
    return lines - kept.count();
}

} // namespace magellan
