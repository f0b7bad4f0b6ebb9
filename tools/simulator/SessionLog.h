// SPDX-License-Identifier: MIT
// SessionLog: what happened on a simulated receiver's line, and when. Written by the receiver's
// thread, read by tests and by --log. [any]

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
    kSpeed,      ///< the other side has changed its speed; also follows kOpened
    kOwnSpeed,   ///< the receiver has changed its speed
    kReceived,   ///< a valid sentence; text: its body
    kUnreadable, ///< an invalid sentence, or one of another speed; text: the line
    kSent,       ///< a sentence; text: its body, or the whole line if a fault damaged it
    kFault,      ///< a fault happens; text: the fault
    kGaveUp,     ///< a data sentence was never acknowledged, so the phase ends; text: its body
    kHungUp,     ///< the port has been removed
};

/// The kind's name in a log line: "opened", "closed", "speed", "own-speed", "received",
/// "unreadable", "sent", "fault", "gave-up", "hung-up".
[[nodiscard]] std::string_view name(LogKind kind) noexcept;

struct LogEntry {
    double seconds = 0; ///< since the receiver started; of a sentence: to its last byte
    LogKind kind{};
    std::string text{};
    int speed = 0; ///< bits per second: the sender's
};

/// The entry as one line of JSON, without a line end:
/// {"time":0.25,"event":"sent","speed":4800,"text":"PMGNCSM,28"}.
[[nodiscard]] std::string jsonLine(const LogEntry& entry);

class SessionLog {
public:
    /// @param lines  gets each entry as a JSON line, from the thread that adds it; may be null
    explicit SessionLog(std::ostream* lines) : lines_(lines) {}

    /// Adds an entry. To be called by one thread. An entry that is earlier than the last one gets
    /// the last one's time.
    void add(LogKind kind, std::string_view text, int speed, Clock::time_point when = Clock::now());

    [[nodiscard]] std::vector<LogEntry> entries() const;

    /// Waits for an entry that matches. Calls `matches` once per entry, in order, from the first.
    /// @return  whether one matched within the limit
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
