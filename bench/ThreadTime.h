// SPDX-License-Identifier: MIT
// Processor time of the calling thread, which other programs do not influence.

#pragma once

#include <ctime>

namespace bench {

[[nodiscard]] inline double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <typename Work> double secondsOf(Work work)
{
    const double start = threadSeconds();
    work();
    return threadSeconds() - start;
}

} // namespace bench
