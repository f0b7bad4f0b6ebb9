// SPDX-License-Identifier: MIT
// Nothing here throws: a lack of memory for a detail must not change what an operation does.

#include "LineAccounts.h"

#include "Lines.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <new>
#include <numeric>

namespace magellan {
using gps::SkipReason;

void addSkipped(gps::LineAccount& lines, std::uint64_t number, SkipReason reason) noexcept
{
    ++lines.seen;
    addDefect(lines, number, reason);
}

void addDefect(gps::LineAccount& lines, std::uint64_t number, SkipReason reason) noexcept
{
    ++lines.skipped[static_cast<std::size_t>(reason)];
    if (lines.details.size() >= gps::TransferAccount::kMostDetails)
        return;
    try {
        lines.details.push_back({number, reason});
    } catch (const std::bad_alloc&) {
        return; // the count has it
    }
}

void addReplaced(gps::LineAccount& lines, std::uint64_t number) noexcept
{
    --lines.accepted;
    addDefect(lines, number, SkipReason::kReplaced);
}

void addOther(gps::LineAccount& lines, std::uint64_t number, std::string_view line) noexcept
{
    if (gps::NMEAUtils::withoutLineEnd(line).empty())
        return;
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
    if (!body)
        addSkipped(lines, number, defectOf(line));
    else if (!isProtocolSentence(*body))
        addSkipped(lines, number, SkipReason::kOtherKind);
}

SkipReason defectOf(std::string_view line) noexcept
{
    return gps::NMEAUtils::isFramedNMEASentence(line) ? SkipReason::kWrongChecksum
                                                      : SkipReason::kNotASentence;
}

bool isProtocolSentence(std::string_view body) noexcept
{
    return body == kEndSentence || body.starts_with("PMGNCSM,");
}

std::uint64_t detailCount(const gps::LineAccount& lines) noexcept
{
    return std::accumulate(lines.skipped.begin(), lines.skipped.end(), std::uint64_t{0});
}

} // namespace magellan
