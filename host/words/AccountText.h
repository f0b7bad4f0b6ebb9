// SPDX-License-Identifier: MIT
// AccountText: what a driver's account of an operation means, in sentences for the user. Used by
// the messages on downloads. Stateless. [host thread]

#pragma once

#include "host/transfer/AccountFindings.h"
#include "host/transfer/RepeatFilter.h"

#include <gps/GPSTransferAccount.h>

#include <cstdint>
#include <string>

namespace host {

/// A number with a comma between groups of three digits, whatever the locale.
[[nodiscard]] std::string groupedText(std::uint64_t number);

/// How many lines of a kind were accepted, and which were damaged:
/// "2,481 of 2,484 track points; 3 damaged: TKLG001.log lines 10, 20, 30". Empty if nothing was
/// lost. Lines of other kinds are not counted.
[[nodiscard]] std::string tallyText(const KindTally& tally);

/// What a serial session did not get, and what the user can do.
[[nodiscard]] std::string gapText(const SessionGap& gap);

/// Which repeated records were left out; empty if none were.
[[nodiscard]] std::string repeatText(const RepeatCounts& repeats);

/// Why a serial session found no receiver, and what to do on the unit.
/// @param voice     what answered; not a receiver
/// @param location  the port
[[nodiscard]] std::string voiceText(gps::LineVoice voice, const std::string& location);

} // namespace host
