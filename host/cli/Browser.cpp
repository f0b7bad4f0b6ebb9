// SPDX-License-Identifier: MIT
// xdg-open usually ends at once, when it has asked a running browser; but some desktops make it
// wait for the browser that it started. So it is watched for a while, and left alone then.

#include "host/cli/Browser.h"

#include "host/base/HostError.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace host {
namespace {

constexpr char kOpener[] = "xdg-open";

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

gps::Error notOpened(const std::string& why, const std::string& path)
{
    return hostError("The page cannot be opened: " + why, "Open it with a browser", path);
}

// In a session of its own, so that Ctrl-C in this terminal does not end the browser, and without
// what browsers print.
// @return  an errno, or 0
int start(const std::string& path, pid_t& process)
{
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    std::string opener = kOpener;
    auto argument = path;
    char* const words[] = {opener.data(), argument.data(), nullptr};
    const int code = ::posix_spawnp(&process, kOpener, &files, &attributes, words, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return code;
}

// @return  how it ended, as waitpid() has it; nullopt if it is still running after a while
std::optional<int> endOf(pid_t process)
{
    using namespace std::chrono_literals;
    constexpr auto kPatience = 3s;
    const auto until = std::chrono::steady_clock::now() + kPatience;
    int status = 0;
    while (::waitpid(process, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= until)
            return std::nullopt;
        std::this_thread::sleep_for(20ms);
    }
    return status;
}

} // namespace

bool hasDesktop()
{
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

std::optional<gps::Error> openInBrowser(const std::string& path)
{
    pid_t process = 0;
    if (const int code = start(path, process))
        return code == ENOENT
                   ? notOpened("the program xdg-open is not installed", path)
                   : systemError("The page cannot be opened", "Open it with a browser", path, code);
    const auto end = endOf(process);
    if (!end || (WIFEXITED(*end) && WEXITSTATUS(*end) == 0))
        return std::nullopt;
    return notOpened(WIFEXITED(*end)
                         ? fmt::format("xdg-open ended with status {}", WEXITSTATUS(*end))
                         : fmt::format("xdg-open was ended by signal {}", WTERMSIG(*end)),
                     path);
}

} // namespace host
