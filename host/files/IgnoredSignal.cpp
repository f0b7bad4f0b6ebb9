// SPDX-License-Identifier: MIT
// sigaction() reads an action without changing it; signal() cannot.

#include "host/files/IgnoredSignal.h"

#include <csignal>

namespace host {

bool isIgnored(int signal) noexcept
{
    struct sigaction present {};
    return ::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

} // namespace host
