// SPDX-License-Identifier: MIT
// Waits for the signals with sigwait() on a thread of its own, because a signal handler may call
// hardly any function.

#include "host/operations/StopSignals.h"

#include "host/files/IgnoredSignal.h"

#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace host {

// The mask is set before the thread starts: threads inherit it, and a signal goes to any thread
// that does not block it.
StopSignals::StopSignals(EndProgram endProgram)
    : file_(::eventfd(0, EFD_CLOEXEC)), endProgram_(std::move(endProgram))
{
    ::sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaddset(&signals_, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    listener_ = std::thread{[this] { listen(); }};
}

StopSignals::~StopSignals()
{
    isClosing_ = true;
    ::pthread_kill(listener_.native_handle(), SIGHUP); // wakes the listener up
    listener_.join();
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    ::close(file_);
}

void StopSignals::requestOnly()
{
    const std::lock_guard lock{ending_};
    endProgram_ = nullptr;
}

void StopSignals::listen()
{
    for (;;) {
        int signal = 0;
        ::sigwait(&signals_, &signal);
        if (isClosing_)
            return;
        if (isIgnored(signal)) // sigwait() returns blocked signals even if they are ignored
            continue;
        handle(signal);
    }
}

void StopSignals::handle(int signal)
{
    const std::lock_guard lock{ending_};
    if (endProgram_) {
        // A second signal must end a program that waits for its terminal here.
        ::pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
        endProgram_(signal);
    }
    if (stopRequested()) { // by default the second one ends the process and removes open files
        ::pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
        ::raise(signal);
    }
    signal_ = signal;
    (void)!::eventfd_write(file_, 1);
}

} // namespace host
