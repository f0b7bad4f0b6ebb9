// SPDX-License-Identifier: MIT

#include "host/watching/StopSignals.h"

#include "host/files/IgnoredSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace host {

StopSignals::StopSignals() : file_(::eventfd(0, EFD_CLOEXEC))
{
    ::sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaddset(&signals_, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    listener_ = std::thread{[this] { listen(); }};
}

StopSignals::~StopSignals()
{
    isOver_ = true;
    ::pthread_kill(listener_.native_handle(), SIGHUP); // one that it waits for, and takes
    listener_.join();
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    ::close(file_);
}

void StopSignals::listen()
{
    for (;;) {
        int signal = 0;
        ::sigwait(&signals_, &signal);
        if (isOver_)
            return;
        if (isIgnored(signal)) // one that is blocked arrives all the same
            continue;
        if (isWished_) { // once more: now it takes its own course, which removes an unfinished file
            ::pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
            ::raise(signal);
        }
        isWished_ = true;
        (void)!::eventfd_write(file_, 1);
    }
}

} // namespace host
