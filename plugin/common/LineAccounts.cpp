// SPDX-License-Identifier: MIT
// Nothing here throws: a lack of memory for a detail must not change what an operation does.

#include "LineAccounts.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <cstddef>
#include <new>
#include <numeric>

namespace magellan {
namespace {

using gps::SkipReason;

constexpr std::size_t kTail = 3; // "*hh"

bool isHexadecimal(char c) noexcept
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

std::string_view withoutLineEnd(std::string_view line) noexcept
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

} // namespace

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
    if (withoutLineEnd(line).empty())
        return;
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
    if (!body)
        addSkipped(lines, number, defectOf(line));
    else if (!isProtocolSentence(*body))
        addSkipped(lines, number, SkipReason::kOtherKind);
}

SkipReason defectOf(std::string_view line) noexcept
{
    line = withoutLineEnd(line);
    const bool isFramed = line.size() > 1 + kTail && line.front() == '$' &&
                          line[line.size() - kTail] == '*' && isHexadecimal(line.end()[-2]) &&
                          isHexadecimal(line.end()[-1]);
    return isFramed ? SkipReason::kWrongChecksum : SkipReason::kNotASentence;
}

bool isProtocolSentence(std::string_view body) noexcept
{
    return body == "PMGNCMD,END" || body.starts_with("PMGNCSM,");
}

void addCounts(gps::LineAccount& total, const gps::LineAccount& lines) noexcept
{
    total.seen += lines.seen;
    total.accepted += lines.accepted;
    for (std::size_t i = 0; i < lines.skipped.size(); ++i)
        total.skipped[i] += lines.skipped[i];
}

std::uint64_t detailCount(const gps::LineAccount& lines) noexcept
{
    return std::accumulate(lines.skipped.begin(), lines.skipped.end(), std::uint64_t{0});
}

} // namespace magellan
