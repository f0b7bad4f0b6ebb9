// SPDX-License-Identifier: MIT
// What a simulated receiver can be told to do wrong, and where in a session. Values only. [any]

#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

/// A session's steps: each command's answer, and the sentences of each data phase.
enum class Step {
    kVersion,
    kHandOn,
    kTransferOn,
    kBaud, ///< until the closing begins
    kWaypoint,
    kWaypointData,
    kTrack,
    kTrackData,
    kRoute,
    kRouteData,
    kTransferOff,
    kHandOff,
    kBaudBack, ///< a BAUD after TOFF or HANDOFF
};

enum class FaultKind {
    kSilence,  ///< does not react to the command; sends no data at all
    kLostAck,  ///< acts, but the answer's first sentence is lost; in a data phase the other side's
               ///< acknowledgements are
    kWrongAck, ///< acknowledges with another checksum
    kGarble,   ///< one bit of the sentence is wrong
    kTruncate, ///< the sentence's first half, without a line end
    kNoise,    ///< a line of rubbish before the sentence
    kDelay,    ///< waits before the answer, or before the first data sentence
    kStop,     ///< leaves a data phase without END
    kEndless,  ///< bytes without a line end, until the line is closed
    kFlood,    ///< good sentences without pause or END, until the line is closed
    kLong,     ///< a sentence of kLongSentence bytes instead
    kNul,      ///< NUL bytes before and in the sentence
    kHangUp,   ///< the port disappears
};

inline constexpr std::size_t kLongSentence = 100000; ///< bytes, from "$" to the checksum

/// One fault. In a step of a command it happens each time that the command comes, or the first
/// `number` times. In a data step it happens once, at data sentence `number` (from 1, the END
/// sentence counted as the last; by default 1), or, for a number of 0, at every sentence each time
/// that it is sent. For kDelay the number is milliseconds (by default 500), for kStop the sentences
/// that are sent before (by default 1).
struct Fault {
    Step step{};
    FaultKind kind{};
    std::optional<int> number{};
};

template <typename Value> struct Named {
    std::string_view name;
    Value value;
};

inline constexpr std::array<Named<Step>, 13> kSteps{{{"version", Step::kVersion},
                                                     {"handon", Step::kHandOn},
                                                     {"ton", Step::kTransferOn},
                                                     {"baud", Step::kBaud},
                                                     {"waypoint", Step::kWaypoint},
                                                     {"waypoint-data", Step::kWaypointData},
                                                     {"track", Step::kTrack},
                                                     {"track-data", Step::kTrackData},
                                                     {"route", Step::kRoute},
                                                     {"route-data", Step::kRouteData},
                                                     {"toff", Step::kTransferOff},
                                                     {"handoff", Step::kHandOff},
                                                     {"baud-back", Step::kBaudBack}}};

inline constexpr std::array<Named<FaultKind>, 13> kFaultKinds{{{"silence", FaultKind::kSilence},
                                                               {"lost-ack", FaultKind::kLostAck},
                                                               {"wrong-ack", FaultKind::kWrongAck},
                                                               {"garble", FaultKind::kGarble},
                                                               {"truncate", FaultKind::kTruncate},
                                                               {"noise", FaultKind::kNoise},
                                                               {"delay", FaultKind::kDelay},
                                                               {"stop", FaultKind::kStop},
                                                               {"endless", FaultKind::kEndless},
                                                               {"flood", FaultKind::kFlood},
                                                               {"long", FaultKind::kLong},
                                                               {"nul", FaultKind::kNul},
                                                               {"hang-up", FaultKind::kHangUp}}};

[[nodiscard]] bool isDataStep(Step step) noexcept;

/// Whether the fault can happen there: kStop only in data steps, kWrongAck only in the others.
[[nodiscard]] bool applies(FaultKind kind, Step step) noexcept;

/// "STEP:KIND" or "STEP:KIND:NUMBER". @return  none when it is neither, or cannot happen there
[[nodiscard]] std::optional<Fault> parseFault(std::string_view text);

/// How long a kDelay takes.
[[nodiscard]] std::chrono::milliseconds delayOf(const Fault& fault) noexcept;

/// The text that parseFault reads.
[[nodiscard]] std::string describe(const Fault& fault);

} // namespace simulator
