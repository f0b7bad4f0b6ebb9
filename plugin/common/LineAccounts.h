// SPDX-License-Identifier: MIT
// Line accounts: what the readers and the serial sessions record about the lines of one file or
// phase. Stateless. [any]

#pragma once

#include <gps/GPSTransferAccount.h>

#include <cstdint>
#include <string_view>

namespace magellan {

/// Counts a line that gave a record or a part of one.
inline void addAccepted(gps::LineAccount& lines) noexcept
{
    ++lines.seen;
    ++lines.accepted;
}

/// Counts a line that gave no record. Details are stored up to TransferAccount::kMostDetails.
void addSkipped(gps::LineAccount& lines, std::uint64_t number, gps::SkipReason reason) noexcept;

/// Records what is missing from an accepted line.
void addDefect(gps::LineAccount& lines, std::uint64_t number, gps::SkipReason reason) noexcept;

/// Converts an accepted line to a skipped one: a later line has taken its place.
void addReplaced(gps::LineAccount& lines, std::uint64_t number) noexcept;

/// Counts a line that is not a sentence of the kind that a reader looks for. Does not count empty
/// lines, END and acknowledgements.
void addOther(gps::LineAccount& lines, std::uint64_t number, std::string_view line) noexcept;

/// Why a line is not a valid sentence.
/// Precondition: it is not.
[[nodiscard]] gps::SkipReason defectOf(std::string_view line) noexcept;

/// Whether a body is END or an acknowledgement, which do not count as lines.
[[nodiscard]] bool isProtocolSentence(std::string_view body) noexcept;

/// How many details there would be if there were room for all.
[[nodiscard]] std::uint64_t detailCount(const gps::LineAccount& lines) noexcept;

} // namespace magellan
