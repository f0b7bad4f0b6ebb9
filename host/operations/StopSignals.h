// SPDX-License-Identifier: MIT
// StopSignals: turns SIGINT, SIGTERM and SIGHUP into a request that a waiting loop can see, so that
// an operation ends in an orderly way. The second signal ends the program at once. Signals that the
// program was started to ignore stay ignored. At most one object in a process. [host thread]

#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

class StopSignals {
public:
    /// Ends the process. Called with the signal, on a thread of this object.
    using EndProgram = std::function<void(int signal)>;

    /// Blocks the signals in this thread and in those that it starts from now on.
    /// @param endProgram  called instead of a request as long as requestOnly() has not been called:
    ///                    for a time in which nothing needs an orderly end, and in which the host
    ///                    thread may be waiting for a slow device. Empty: every signal is a request
    explicit StopSignals(EndProgram endProgram = {});

    /// Restores this thread's signal mask. A signal that has arrived by then is handled or dropped,
    /// and does not end the program afterwards.
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// From now on a signal is only a request. Does not return if a signal is ending the program.
    void requestOnly();

    /// A file descriptor that becomes readable with the first request. [any]
    [[nodiscard]] int file() const noexcept { return file_; }

    [[nodiscard]] bool stopRequested() const noexcept { return signal_ != 0; } ///< [any]

    /// The first signal; 0 before it. [any]
    [[nodiscard]] int signal() const noexcept { return signal_; }

private:
    void listen();
    void handle(int signal);

    sigset_t signals_{};
    sigset_t before_{};
    int file_;
    std::atomic<int> signal_{0};
    std::atomic<bool> isClosing_{false};
    std::mutex ending_; // guards endProgram_, and is held while that runs
    EndProgram endProgram_;
    std::thread listener_;
};

} // namespace host
