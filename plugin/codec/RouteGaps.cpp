// SPDX-License-Identifier: MIT
// A route has ended when its last sentence or a sentence of another route arrives.

#include "RouteGaps.h"

#include "../common/LineAccounts.h"
#include "RouteSentence.h"

namespace magellan {

using gps::SkipReason;

void RouteGaps::add(const SentenceFields& fields, std::uint64_t number, gps::LineAccount& lines)
{
    const auto position = routePosition(fields);
    const bool isSameRoute = position.name == name_;
    if (isSameRoute && position.number == number_)
        return; // repeated
    if (isOpen_ && !(isSameRoute && position.number > number_))
        finish(lines); // the route before this one
    hasGap_ = hasGap_ || position.number != (isOpen_ ? number_ + 1 : 1);
    name_ = position.name;
    number_ = position.number;
    line_ = number;
    isOpen_ = true;
    if (position.number != position.total)
        return;
    if (hasGap_)
        addDefect(lines, number, SkipReason::kIncomplete);
    isOpen_ = hasGap_ = false;
}

void RouteGaps::finish(gps::LineAccount& lines) noexcept
{
    if (isOpen_)
        addDefect(lines, line_, SkipReason::kIncomplete);
    isOpen_ = hasGap_ = false;
}

} // namespace magellan
