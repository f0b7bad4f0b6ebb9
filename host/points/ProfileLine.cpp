// SPDX-License-Identifier: MIT
// Neighbouring values in a column become one piece; gaps begin another one.

#include "host/points/ProfileLine.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace host {
namespace {

// In a column with more gaps, nobody can see them.
constexpr std::size_t kMostInColumn = 4;

bool isFull(const std::vector<ProfilePiece>& pieces, std::size_t column)
{
    return pieces.size() >= kMostInColumn &&
           pieces.end()[-std::ptrdiff_t{kMostInColumn}].column == column;
}

void append(std::vector<ProfilePiece>& pieces, const ProfilePiece& next)
{
    const bool isInColumn = !pieces.empty() && pieces.back().column == next.column;
    if (!isInColumn || (!next.isJoined && !isFull(pieces, next.column))) {
        pieces.push_back(next);
        return;
    }
    auto& last = pieces.back();
    last.lowest = std::min(last.lowest, next.lowest);
    last.highest = std::max(last.highest, next.highest);
    last.last = next.last;
}

std::size_t columnAt(double fraction, std::size_t columns)
{
    return std::min(static_cast<std::size_t>(fraction * static_cast<double>(columns)), columns - 1);
}

} // namespace

ProfileLine profileLine(const TrackProfile& profile, ProfileValue value,
                        std::span<const double> positions, std::size_t columns)
{
    ProfileLine line{.columns = columns};
    const double length = positions.empty() ? 0 : positions.back();
    const bool isElevation = value == ProfileValue::kElevation;
    const auto breaks = profile.breaks();
    auto next = breaks.begin();
    bool isJoined = false;
    for (std::size_t i = 0; i < profile.size() && length > 0; ++i) {
        if (next != breaks.end() && *next == i) {
            isJoined = false;
            ++next;
        }
        const double known = isElevation ? profile.elevation(i) : profile.speed(i);
        if (std::isnan(known)) {
            isJoined = isJoined && !isElevation;
            continue;
        }
        const auto at = static_cast<float>(known);
        append(line.pieces, {columnAt(positions[i] / length, columns), at, at, at, at, isJoined});
        isJoined = true;
        ++line.points;
        line.lowest = std::fmin(line.lowest, known);
        line.highest = std::fmax(line.highest, known);
    }
    return line;
}

ProfileLine narrowed(const ProfileLine& line, std::size_t columns)
{
    ProfileLine narrow{.columns = std::min(columns, line.columns),
                       .points = line.points,
                       .lowest = line.lowest,
                       .highest = line.highest};
    for (auto piece : line.pieces) {
        piece.column = piece.column * narrow.columns / line.columns;
        append(narrow.pieces, piece);
    }
    return narrow;
}

ValueRange rangeOf(const ProfileLine& line, ProfileValue value) noexcept
{
    constexpr double kHeadroom = 1.22;
    if (value == ProfileValue::kSpeed) {
        constexpr double kLeastSpeed = 1; // metres per second
        return {0, std::max(line.highest, kLeastSpeed) * kHeadroom};
    }
    constexpr double kLeastHeight = 20; // metres
    constexpr double kBelow = 0.08;     // of the values
    const double range = std::max(line.highest - line.lowest, kLeastHeight);
    const double low = (line.lowest + line.highest - range) / 2 - range * kBelow;
    return {low, low + range * kHeadroom};
}

} // namespace host
