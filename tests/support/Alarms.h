// SPDX-License-Identifier: MIT
// Alarms: interrupts waiting calls repeatedly during its lifetime.

#pragma once

#include <atomic>
#include <csignal>

#include <sys/time.h>

namespace support {

class Alarms {
public:
    Alarms()
    {
        struct sigaction action {};
        action.sa_handler = [](int) { ++count; };
        ::sigaction(SIGALRM, &action, &before_);
        const itimerval every{{0, 5'000}, {0, 5'000}};
        ::setitimer(ITIMER_REAL, &every, nullptr);
    }
    ~Alarms()
    {
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    Alarms(const Alarms&) = delete;
    Alarms& operator=(const Alarms&) = delete;

    static inline std::atomic<int> count{0};

private:
    struct sigaction before_ {};
};

} // namespace support
