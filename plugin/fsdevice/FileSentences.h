// SPDX-License-Identifier: MIT
// Visits the sentences in the text of a receiver's file, and records in an account what becomes of
// each line. Used by the readers. Stateless. [any]

#pragma once

#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/WayPointSentence.h"
#include "../common/LineAccounts.h"
#include "../common/Lines.h"

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace magellan {

/// Why a line gave no record; nullopt if it gave one.
using Skipped = std::optional<gps::SkipReason>;

/// Calls `visit` and records what becomes of the line.
template <typename Visit> void visitSentence(const SentenceFields& fields, std::uint64_t number,
                                             gps::LineAccount& lines, Visit& visit)
{
    try {
        if (const Skipped reason = visit(fields, number))
            addSkipped(lines, number, *reason);
        else
            addAccepted(lines);
    } catch (const gps::RangeError&) {
        addSkipped(lines, number, gps::SkipReason::kTooFewFields);
        throw;
    }
}

/// Calls `visit` with the fields and the number of each line that is a sentence of the given name.
/// @param visit  returns why the line gave no record; nullopt if it gave one
template <typename Visit> void forEachSentence(std::string_view text, std::string_view name,
                                               gps::LineAccount& lines, Visit visit)
{
    std::uint64_t number = 0;
    forEachLine(text, [&](std::string_view line) {
        ++number;
        if (const auto fields = SentenceFields::ofSentence(line, name))
            visitSentence(*fields, number, lines, visit);
        else
            addOther(lines, number, line);
    });
}

/// Calls `onWayPoint` and `onRoute` with the fields and the number of each waypoint and route
/// sentence of a route file. Both return why the line gave no record.
template <typename OnWayPoint, typename OnRoute>
void forEachRouteFileSentence(std::string_view text, gps::LineAccount& lines, OnWayPoint onWayPoint,
                              OnRoute onRoute)
{
    std::uint64_t number = 0;
    const auto visitBody = [&](std::string_view body) {
        if (const auto wayPoint = SentenceFields::ofBody(body, kWayPointSentence))
            visitSentence(*wayPoint, number, lines, onWayPoint);
        else if (const auto route = SentenceFields::ofBody(body, kRouteSentence))
            visitSentence(*route, number, lines, onRoute);
        else
            return false;
        return true;
    };
    forEachLine(text, [&](std::string_view line) {
        ++number;
        const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
        if (!body || !visitBody(*body))
            addOther(lines, number, line);
    });
}

} // namespace magellan
