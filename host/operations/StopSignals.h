// SPDX-License-Identifier: MIT
// StopSignals: turns SIGINT, SIGTERM and SIGHUP into a request that a waiting loop can see, so that
// a download ends in an orderly way. The second signal ends the program at once. Signals that the
// program was started to ignore stay ignored. At most one object in a process. [host thread]

#pragma once

#include <atomic>
#include <csignal>
#include <thread>

namespace host {

class StopSignals {
public:
    /// Blocks the signals in this thread and in those that it starts from now on.
    StopSignals();

    /// Restores this thread's signal mask.
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// A file descriptor that becomes readable with the first request. [any]
    [[nodiscard]] int file() const noexcept { return file_; }

    [[nodiscard]] bool stopRequested() const noexcept { return signal_ != 0; } ///< [any]

    /// The first signal; 0 before it. [any]
    [[nodiscard]] int signal() const noexcept { return signal_; }

private:
    void listen();

    sigset_t signals_{};
    sigset_t before_{};
    int file_;
    std::atomic<int> signal_{0};
    std::atomic<bool> isClosing_{false};
    std::thread listener_;
};

} // namespace host
