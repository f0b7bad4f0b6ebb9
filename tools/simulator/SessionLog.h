// SPDX-License-Identifier: MIT
// What happened on a simulated receiver's line, with times. Written by the receiver's thread, read
// by anyone. [any]

#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

using Clock = std::chrono::steady_clock;

enum class LogKind {
    kOpened,     ///< the other side has opened the line
    kClosed,     ///< the other side has closed it
    kSpeed,      ///< the other side has another speed now (also what it has on opening)
    kOwnSpeed,   ///< the receiver has changed its speed
    kReceived,   ///< a good sentence; text: its body
    kUnreadable, ///< a line that the receiver cannot read: of another speed, or no sentence; text:
                 ///< the line
    kSent,       ///< a sentence; text: its body, or the whole line where a fault has damaged it
    kFault,      ///< a fault happens; text: the fault
    kGaveUp,     ///< a data sentence was never acknowledged: the phase is over; text: its body
    kHungUp,     ///< the receiver is gone
};

/// The kind's name in a log line: "opened", "closed", "speed", "own-speed", "received",
/// "unreadable", "sent", "fault", "gave-up", "hung-up".
[[nodiscard]] std::string_view name(LogKind kind) noexcept;

struct LogEntry {
    double seconds =
        0; ///< since the receiver was made; of a sentence: when its last byte was over the wire
    LogKind kind{};
    std::string text{};
    int speed = 0; ///< bits per second: of what is received the other side's, of what is sent the
                   ///< receiver's own
};

/// The entry as one line of JSON, without a line end:
/// {"time":0.25,"event":"sent","speed":4800,"text":"PMGNCSM,28"}.
[[nodiscard]] std::string jsonLine(const LogEntry& entry);

class SessionLog {
public:
    /// @param lines  gets each entry as a line of JSON, from the thread that adds it; may be null
    explicit SessionLog(std::ostream* lines) : lines_(lines) {}

    /// From one thread. The times never go back: what is said to have been earlier was at the last
    /// entry's time.
    void add(LogKind kind, std::string_view text, int speed, Clock::time_point when = Clock::now());

    [[nodiscard]] std::vector<LogEntry> entries() const;

    /// Waits for an entry. Shows each one to `matches` once, in order, from the first on.
    /// @return  whether one matched within the time
    [[nodiscard]] bool waitFor(const std::function<bool(const LogEntry&)>& matches,
                               std::chrono::milliseconds limit) const;

private:
    const Clock::time_point start_ = Clock::now();
    Clock::time_point last_ = start_;
    std::ostream* const lines_;
    mutable std::mutex mutex_;
    mutable std::condition_variable added_;
    std::vector<LogEntry> entries_;
};

} // namespace simulator
