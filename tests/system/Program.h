// SPDX-License-Identifier: MIT
// Runs the built program, or another one, and collects its output and exit status.

#pragma once

#include "support/Signals.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

struct Ran {
    std::string out;
    std::string err;
    int status = -1; ///< the exit status; 128 and the signal's number when a signal ended it
};

/// Where a program's standard streams go instead of to `Ran::out` and `Ran::err`, and additions to
/// its environment.
struct How {
    const char* standardOutput = nullptr;
    std::vector<std::string> environment{};
    const char* standardError = nullptr;
};

/// Runs a program to its end. The first word is its path, or a name to look up in PATH.
inline Ran run(const std::vector<std::string>& words, const How& how = {})
{
    const TemporaryFolder folder;
    const std::string out = how.standardOutput != nullptr ? how.standardOutput : folder.path("out");
    const std::string err = how.standardError != nullptr ? how.standardError : folder.path("err");
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, 1, out.c_str(), O_WRONLY | O_CREAT, 0666);
    ::posix_spawn_file_actions_addopen(&files, 2, err.c_str(), O_WRONLY | O_CREAT, 0666);

    std::vector<char*> arguments;
    for (const auto& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    // Its own home folder, so that no user's stored defaults are read, and the test's mocked device
    // tree if it has one.
    std::vector<std::string> settings{"HOME=" + folder.path()};
    for (const char* const name : {"PATH", "LD_PRELOAD", "UMOCKDEV_DIR"}) {
        if (const char* const value = std::getenv(name))
            settings.push_back(std::string{name} + '=' + value);
    }
    settings.insert(settings.end(), how.environment.begin(), how.environment.end());
    std::vector<char*> environment;
    for (auto& setting : settings)
        environment.push_back(setting.data());
    environment.push_back(nullptr);

    pid_t child = 0;
    const int failure =
        ::posix_spawnp(&child, words.front().c_str(), &files, SpawnAttributes{}.get(),
                       arguments.data(), environment.data());
    ::posix_spawn_file_actions_destroy(&files);
    if (failure != 0)
        throw std::runtime_error{"cannot run " + words.front()};
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return {folder.read("out"), folder.read("err"),
            WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status)};
}

/// Runs the built program with these arguments.
inline Ran magellangps(std::vector<std::string> words, const How& how = {})
{
    words.insert(words.begin(), MAGELLAN_BIN_DIR "/magellangps");
    return run(words, how);
}

} // namespace support
