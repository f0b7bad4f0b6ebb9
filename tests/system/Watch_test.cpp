// SPDX-License-Identifier: MIT
// `devices --watch` with the built program.

#include <array>
#include <csignal>

#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "system/Receiver.h"

namespace {

TEST(Watch, PrintsTheDevicesAtOnceAndStaysUntilInterrupted)
{
    const support::Receiver receiver;
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, pipe[1], STDOUT_FILENO);
    std::string program = MAGELLAN_BIN_DIR "/magellangps";
    std::string folder = receiver.path();
    std::array<char*, 6> words{program.data(),
                               const_cast<char*>("devices"),
                               const_cast<char*>("--watch"),
                               const_cast<char*>("--test-folder"),
                               folder.data(),
                               nullptr};
    pid_t child = 0;
    ASSERT_EQ(::posix_spawn(&child, program.c_str(), &files, nullptr, words.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&files);
    ::close(pipe[1]);

    std::string out;
    std::array<char, 512> piece{};
    while (out.find("Magellan device 42") == std::string::npos) {
        const auto count = ::read(pipe[0], piece.data(), piece.size());
        ASSERT_GT(count, 0);
        out.append(piece.data(), static_cast<std::size_t>(count));
    }
    EXPECT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "stays";
    ::kill(child, SIGINT);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    ::close(pipe[0]);
}

} // namespace
