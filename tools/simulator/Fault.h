// SPDX-License-Identifier: MIT
// Fault: a mistake that a simulated receiver makes on request, and the step of the session where it
// makes it. Used by tests and by the --fault option. Values only. [any]

#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

/// The steps of a session: the answer to each command, and the sentences of each data phase.
enum class Step {
    kVersion,
    kHandOn,
    kTransferOn,
    kBaud, ///< before TOFF or HANDOFF
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
    kSilence,  ///< ignores the command; sends no data at all
    kLostAck,  ///< acts, but the first sentence of the answer is lost. In a data step the other
               ///< side's acknowledgements are lost
    kWrongAck, ///< acknowledges with another checksum
    kGarble,   ///< changes one bit of the sentence
    kTruncate, ///< sends the first half of the sentence, without a line end
    kNoise,    ///< sends a line of random bytes before the sentence
    kDelay,    ///< waits before the answer, or before the first data sentence
    kStop,     ///< ends a data phase without END
    kEndless,  ///< sends bytes without a line end until the line is closed
    kFlood,    ///< sends valid sentences without a pause until the line is closed
    kLong,     ///< sends a sentence of kLongSentence bytes instead
    kNul,      ///< sends NUL bytes before and in the sentence
    kHangUp,   ///< removes the port
};

inline constexpr std::size_t kLongSentence = 100000; ///< bytes, from "$" to the checksum

/// One fault. In a command's step it happens each time the command arrives, or the first `number`
/// times. In a data step it happens once, at data sentence `number` (from 1, END counts as the
/// last; default 1), or, if the number is 0, each time that any sentence is sent. For kDelay the
/// number is milliseconds (default 500), for kStop the number of sentences sent before (default 1).
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

/// Whether the fault can happen in this step: kStop only in data steps, kWrongAck only in others.
[[nodiscard]] bool applies(FaultKind kind, Step step) noexcept;

/// Reads "STEP:KIND" or "STEP:KIND:NUMBER". @return  nullopt for anything else, and for a kind that
/// cannot happen in the step
[[nodiscard]] std::optional<Fault> parseFault(std::string_view text);

/// The duration of a kDelay.
[[nodiscard]] std::chrono::milliseconds delayOf(const Fault& fault) noexcept;

/// The text that parseFault reads.
[[nodiscard]] std::string describe(const Fault& fault);

} // namespace simulator
