// SPDX-License-Identifier: MIT
// Default signal handling for tests, whatever the test run was started with: nohup and background
// jobs of a shell start programs with SIGINT or SIGHUP ignored, and children inherit that.

#pragma once

#include <array>
#include <csignal>
#include <cstddef>

#include <spawn.h>

namespace support {

/// The signals that end a program and that the tests send.
inline constexpr std::array<int, 4> kEndingSignals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

/// Gives the ending signals their default action for its lifetime, and then the previous one.
class DefaultSignals {
public:
    DefaultSignals()
    {
        struct sigaction byDefault {};
        byDefault.sa_handler = SIG_DFL;
        for (std::size_t i = 0; i < kEndingSignals.size(); ++i)
            ::sigaction(kEndingSignals[i], &byDefault, &before_[i]);
    }
    ~DefaultSignals()
    {
        for (std::size_t i = 0; i < kEndingSignals.size(); ++i)
            ::sigaction(kEndingSignals[i], &before_[i], nullptr);
    }
    DefaultSignals(const DefaultSignals&) = delete;
    DefaultSignals& operator=(const DefaultSignals&) = delete;

private:
    std::array<struct sigaction, kEndingSignals.size()> before_{};
};

/// Attributes for posix_spawn that start a child with the default action for the ending signals,
/// and with no signal blocked.
class SpawnAttributes {
public:
    SpawnAttributes()
    {
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        for (const int signal : kEndingSignals)
            ::sigaddset(&signals, signal);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    [[nodiscard]] const posix_spawnattr_t* get() const noexcept { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

} // namespace support
