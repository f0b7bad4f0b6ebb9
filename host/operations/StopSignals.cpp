// SPDX-License-Identifier: MIT
// Waits for the signals with sigwait() on a thread of its own, because a signal handler may call
// hardly any function.

#include "host/operations/StopSignals.h"

#include "host/files/IgnoredSignal.h"

#include <ctime>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace host {
namespace {

// Ends the listener. By default nothing happens at this signal, so it does no harm where it comes
// too late.
constexpr int kWakeUp = SIGURG;

} // namespace

// The mask is set before the thread starts: threads inherit it, and a signal goes to any thread
// that does not block it.
StopSignals::StopSignals(EndProgram endProgram)
    : file_(::eventfd(0, EFD_CLOEXEC)), endProgram_(std::move(endProgram))
{
    ::sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, kWakeUp})
        ::sigaddset(&signals_, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    listener_ = std::thread{[this] { listen(); }};
}

StopSignals::~StopSignals()
{
    isClosing_ = true;
    ::pthread_kill(listener_.native_handle(), kWakeUp);
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
    while (!isClosing_) {
        int signal = 0;
        ::sigwait(&signals_, &signal);
        handle(signal);
    }
    // A signal that is still pending when the mask is restored would end the program without a
    // word. A request comes too late now, but what ends the program still does.
    constexpr timespec kNoTime{};
    int signal = ::sigtimedwait(&signals_, nullptr, &kNoTime);
    for (; signal > 0; signal = ::sigtimedwait(&signals_, nullptr, &kNoTime)) {
        if (endProgram_)
            handle(signal);
    }
}

void StopSignals::handle(int signal)
{
    if (signal == kWakeUp || isIgnored(signal)) // waiting returns ignored signals, too
        return;
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
