// SPDX-License-Identifier: MIT
// StopSignals: turns the wish to end the program (SIGINT, SIGTERM, SIGHUP) into something that a
// waiting loop sees, so that what is being written is finished first. A second wish ends the
// program at once. A signal that the program was started to ignore is no wish. One in a process.
// [host thread]

#pragma once

#include <atomic>
#include <csignal>
#include <thread>

namespace host {

class StopSignals {
public:
    /// From here on the signals are held back from this thread and those that it starts.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Something can be read from it once the end was wished for. [any]
    [[nodiscard]] int file() const noexcept { return file_; }

    [[nodiscard]] bool isWished() const noexcept { return isWished_; } ///< [any]

private:
    void listen();

    sigset_t signals_{};
    sigset_t before_{};
    int file_;
    std::atomic<bool> isWished_{false};
    std::atomic<bool> isOver_{false};
    std::thread listener_;
};

} // namespace host
