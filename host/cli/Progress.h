// SPDX-License-Identifier: MIT
// Progress: one line on a terminal that says how far an operation is, printed over again and again.

#pragma once

#include "host/cli/Options.h"
#include "host/operations/EventStream.h"

#include <platform/OrvUtils/SerialTraffic.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// How far an operation is: counts since its present phase began.
struct Advance {
    std::string_view phase;
    std::size_t records = 0;
    gps::SerialTraffic
        line{}; ///< what went over a serial line, and its speed; no speed: there is no such line
    std::chrono::milliseconds time{};
};

/// One line without its end, short enough for 80 columns.
[[nodiscard]] std::string progressText(const Advance& advance);

/// Whether an operation with these options shows its progress: on a terminal that can print over a
/// line, when nothing else is written to it meanwhile.
/// @param usesStandardOutput  whether records go there, too
[[nodiscard]] bool wantsProgress(const GlobalOptions& options, bool usesStandardOutput);

/// Fed on the thread that takes an operation's events, and with an empty batch now and then while
/// none comes, since a serial line can be silent for long. Never waits for the terminal: what it
/// does not take at once is not shown.
class Progress {
public:
    /// @param isShown  whether anything is printed at all
    explicit Progress(bool isShown);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Something begins: an operation, or what the host does around one.
    void begin(std::string_view phase);

    void show(const EventBatch& batch);
    void clear() const;

private:
    using Clock = std::chrono::steady_clock;

    void take(const Event& event);
    void enter(std::string_view phase);
    void print();

    int terminal_; // a description of the host's own; -1: nothing is printed
    std::string phase_;
    std::size_t records_ = 0;
    bool isSerial_ = false;       // something went over a serial line since it began
    gps::SerialTraffic before_{}; // when the phase began
    Clock::time_point entered_{}; // the phase
    Clock::time_point next_{};
};

} // namespace host
