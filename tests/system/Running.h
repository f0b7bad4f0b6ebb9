// SPDX-License-Identifier: MIT
// A program that runs in the background of a test, and its output. Killed when the test ends.

#pragma once

#include "support/Signals.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

class Running {
public:
    /// @param words  its path and its arguments
    explicit Running(std::vector<std::string> words)
    {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0)
            throw std::runtime_error{"no pipe"};
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_adddup2(&files, pipe[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_addclose(&files, pipe[0]);
        ::posix_spawn_file_actions_addclose(&files, pipe[1]);
        std::vector<char*> arguments;
        for (auto& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1); // no test reads the user's configuration
        const int failure = ::posix_spawn(&child_, words.front().c_str(), &files,
                                          SpawnAttributes{}.get(), arguments.data(), environ);
        ::posix_spawn_file_actions_destroy(&files);
        ::close(pipe[1]);
        out_ = pipe[0];
        if (failure != 0)
            throw std::runtime_error{"cannot run " + words.front()};
    }
    ~Running()
    {
        (void)end(SIGTERM);
        ::close(out_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// Reads for at most 0.2 seconds. @return  everything it has printed so far
    const std::string& read()
    {
        pollfd ready{out_, POLLIN, 0};
        std::array<char, 4096> piece{};
        if (::poll(&ready, 1, 200) == 1) {
            if (const auto count = ::read(out_, piece.data(), piece.size()); count > 0)
                printed_.append(piece.data(), static_cast<std::size_t>(count));
        }
        return printed_;
    }

    /// Reads until it has printed a text, for at most 30 seconds. @return  everything it has
    /// printed so far
    const std::string& readUntil(std::string_view text)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{30};
        while (printed_.find(text) == std::string::npos &&
               std::chrono::steady_clock::now() < deadline)
            read();
        return printed_;
    }

    /// Reads until it closes its output. @return  everything it has printed
    const std::string& readToEnd()
    {
        std::array<char, 4096> piece{};
        for (ssize_t count = 0; (count = ::read(out_, piece.data(), piece.size())) > 0;)
            printed_.append(piece.data(), static_cast<std::size_t>(count));
        return printed_;
    }

    /// Whether it is still running.
    [[nodiscard]] bool runs()
    {
        if (child_ != 0 && ::waitpid(child_, &status_, WNOHANG) == child_)
            child_ = 0;
        return child_ != 0;
    }

    /// Sends it a signal.
    void send(int signal) const
    {
        if (child_ != 0)
            ::kill(child_, signal);
    }

    /// Sends it a signal and waits for its end. @return  the status from waitpid
    int end(int signal)
    {
        if (child_ != 0) {
            send(signal);
            ::waitpid(std::exchange(child_, 0), &status_, 0);
        }
        return status_;
    }

private:
    pid_t child_ = 0;
    int out_ = -1;
    int status_ = 0;
    std::string printed_;
};

} // namespace support
