// SPDX-License-Identifier: MIT
// GPSTransferAccount: optional interface of a driver that keeps account of its operations: which
// lines it skipped and why, what it could not read, how each phase of a serial session ended. The
// records alone do not show what is missing, and many failures end no operation. A host asks a
// driver for it with dynamic_cast; the object is the driver itself.

#pragma once

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gps {

/// Why a line of a file, or a sentence of a phase, gave no record, or not a whole one.
enum class SkipReason : std::uint8_t {
    kNotASentence,  ///< no "$", no "*" with two digits, or nothing between them
    kWrongChecksum, ///< damaged: the checksum is that of another text
    kOtherKind,     ///< a valid sentence that does not belong here
    kTooFewFields,  ///< a truncated sentence; it ends the reading of its file
    kNoName,        ///< a record that is kept by name has none
    kReplaced,      ///< a later record of the same file has the same name
    kRepeated,      ///< a serial sentence that is the same as the one before it; its record was
                    ///< reported all the same
    kUnknownPoint,  ///< a route's point whose waypoint is not known. Counts points; their sentences
                    ///< are accepted
    kIncomplete,    ///< a route of which a sentence is missing. Counts routes, with the number of
                    ///< the last sentence that arrived; it is accepted
};
inline constexpr std::size_t kSkipReasonCount = 9;

struct SkippedLine {
    std::uint64_t number = 0; ///< from 1: the line in its file, or the sentence in its phase
    SkipReason reason{};
};

/// What happened to the lines of one file, or to the sentences of one phase.
struct LineAccount {
    std::uint64_t seen = 0;     ///< not counting empty lines, END and acknowledgements
    std::uint64_t accepted = 0; ///< that gave a record or a part of one
    std::array<std::uint64_t, kSkipReasonCount> skipped{}; ///< by SkipReason
    std::vector<SkippedLine> details{};                    ///< the first; see kMostDetails

    [[nodiscard]] std::uint64_t skippedFor(SkipReason reason) const noexcept
    {
        return skipped[static_cast<std::size_t>(reason)];
    }

    /// Adds the counts of another account, without its details. [any]
    void addCounts(const LineAccount& other) noexcept
    {
        seen += other.seen;
        accepted += other.accepted;
        for (std::size_t i = 0; i < kSkipReasonCount; ++i)
            skipped[i] += other.skipped[i];
    }
};

/// One file that an operation read: to report it, or to merge records into it.
struct FileAccount {
    std::string kind{}; ///< "tracks", "waypoints", "routes" or "geocaches"
    std::string path{}; ///< absolute
    LineAccount lines{};
    std::optional<Error> error{}; ///< why it was not read, or not to its end
};

/// A folder that could not be listed, or an entry that could not be looked at.
struct UnseenPath {
    std::string kind{}; ///< as in FileAccount; "device" for what all kinds depend on
    std::string path{}; ///< absolute
    Error error;
};

/// How a phase of a serial session ended.
enum class PhaseEnd : std::uint8_t {
    kNotReached, ///< the session ended before it
    kEnd,        ///< with the receiver's END
    kSilence,    ///< nothing arrived any more
    kDamage,     ///< most of the reads that failed found damaged sentences or noise
    kStopped,    ///< the host stopped the session
    kFailed,     ///< an error or an exception: the line, a truncated sentence, a limit
};

struct PhaseAccount {
    std::string kind{}; ///< "tracks", "waypoints" or "routes"
    PhaseEnd end = PhaseEnd::kNotReached;
    LineAccount lines{};
};

/// What a session sends a command for.
enum class CommandPurpose : std::uint8_t {
    kTransfer, ///< finds the receiver, prepares it for the transfer, or requests data
    kSpeedUp,  ///< changes to the speed of the transfer
    kRestore,  ///< restores the receiver's state after the transfer, the speed included
};

/// A command of a serial session that is repeated until it is answered, with all its attempts.
struct CommandAccount {
    std::string command{}; ///< its body, such as "PMGNCMD,TON"
    int attempts = 0;
    /// Whether the receiver acknowledged it. For the question that finds a receiver: whether one
    /// answered.
    bool acknowledged = false;
    CommandPurpose purpose = CommandPurpose::kTransfer;
};

/// What answered on a serial line.
enum class LineVoice : std::uint8_t {
    kNothing,  ///< no byte arrived
    kNoise,    ///< bytes arrived, but no valid sentence
    kReceiver, ///< sentences of the command protocol
    kNmea,     ///< position sentences that a unit sends by itself, and nothing else
};

struct TransferAccount {
    /// No vector holds more elements than this; neither do all details together.
    static constexpr std::size_t kMostDetails = 1000;

    std::vector<FileAccount> files{}; ///< in reading order
    std::vector<UnseenPath> unseen{}; ///< in the order in which they were met
    /// All that the session needs, in session order. Routes need the waypoints, requested or not.
    std::vector<PhaseAccount> phases{};
    std::vector<CommandAccount> commands{}; ///< in session order
    std::uint64_t omitted = 0;              ///< elements and details that there was no room for
    /// The counts of all files together by kind, with the first error, whether or not the files
    /// have an element. Without paths and details.
    std::vector<FileAccount> totals{};
    bool stopped = false; ///< ended early because of GPSSessionControl::requestStop()
};

class GPSTransferAccount {
public:
    virtual ~GPSTransferAccount() = default;

    /// Returns the account of the last operation: a download, an import or a send. Empty before the
    /// first. Call it only while no operation runs. [host thread]
    [[nodiscard]] virtual TransferAccount transferAccount() const = 0;

    /// Returns what answered in the last serial session, or has answered so far in the running one.
    /// [any]
    [[nodiscard]] virtual LineVoice lineVoice() const noexcept = 0;
};

} // namespace gps
