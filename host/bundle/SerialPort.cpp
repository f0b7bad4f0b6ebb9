// SPDX-License-Identifier: MIT
// The usual reason why a port cannot be opened is that the user is not in the port's group. So the
// advice names the group and the command that joins it.

#include "host/bundle/SerialPort.h"

#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <platform/OrvUtils/OrvSerial.h>
#include <platform/OrvUtils/SerialPorts.h>
#include <platform/System/UserDefaults.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRecordSize = 16384; // bytes: room for a group of a thousand

std::string userName()
{
    std::array<char, kRecordSize> texts{};
    passwd record{};
    passwd* found = nullptr;
    ::getpwuid_r(::geteuid(), &record, texts.data(), texts.size(), &found);
    return found != nullptr ? found->pw_name : "USER";
}

std::string processName(const fs::path& process)
{
    std::ifstream file{process / "comm"};
    std::string name;
    std::getline(file, name);
    return displayText(name);
}

// The program that has a port open, as "NAME (process NUMBER)"; empty if the user may not know it.
// Source: proc(5).
std::string programUsing(const std::string& port)
{
    std::error_code error;
    const auto target = fs::exists(port, error) ? fs::canonical(port, error) : fs::path{};
    for (fs::directory_iterator process{"/proc", error};
         !error && process != fs::directory_iterator{}; process.increment(error)) {
        const auto number = process->path().filename().string();
        if (number.find_first_not_of("0123456789") != std::string::npos ||
            number == std::to_string(::getpid()))
            continue;
        std::error_code ignored; // of a process of another user, or one that has ended
        for (fs::directory_iterator file{process->path() / "fd", ignored};
             !ignored && file != fs::directory_iterator{}; file.increment(ignored)) {
            if (fs::read_symlink(file->path(), ignored) == target && !ignored)
                return trFormat("{} (process {})", processName(process->path()), number);
        }
    }
    return {};
}

gps::Error busyPort(const std::string& port)
{
    const auto program = programUsing(port);
    if (!program.empty())
        return hostError(trFormat("Another program has the port open: {}", program),
                         tr("Close that program, and try again"), port);
    return hostError(tr("Another program has the port open"),
                     trFormat("Close that program, and try again; run \"sudo fuser -v {}\" to "
                              "find it",
                              port),
                     port);
}

// Whether another program has locked a port, or has it to itself.
bool isBusy(const std::string& port)
{
    const int line = ::open(port.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (line < 0)
        return errno == EBUSY;
    const bool isLocked = ::flock(line, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    ::close(line);
    return isLocked;
}

// Joining the group helps only if the group may both read and write.
std::string adviceFor(const std::string& port)
{
    constexpr mode_t kReadAndWrite = S_IRGRP | S_IWGRP;
    std::array<char, kRecordSize> texts{};
    group record{};
    group* owner = nullptr;
    struct stat status {};
    if (::stat(port.c_str(), &status) == 0 && (status.st_mode & kReadAndWrite) == kReadAndWrite)
        ::getgrgid_r(status.st_gid, &record, texts.data(), texts.size(), &owner);
    return permissionAdvice(owner, userName());
}

} // namespace

bool isSerialPort(const std::string& location)
{
    std::error_code ignored;
    const auto status = fs::status(location, ignored);
    return fs::is_character_file(status) || (location.starts_with("/dev/") && !fs::exists(status));
}

void addSerialPort(const std::string& port)
{
    auto& defaults = gps::UserDefaults::standard();
    gps::Array ports;
    // The stored ports are repeated, since a value for this run hides the stored one.
    for (auto& stored :
         defaults.stringArrayForKey(gps::kTestPortsKey).value_or(std::vector<std::string>{}))
        ports.emplace_back(std::move(stored));
    ports.emplace_back(port);
    defaults.setForThisRun(gps::kTestPortsKey, std::move(ports));
}

void waitWhileBusy(const std::string& port, const std::function<bool()>& goOn)
{
    constexpr std::chrono::milliseconds kStep{200};
    const auto end = std::chrono::steady_clock::now() + kPortPatience;
    while (isBusy(port) && std::chrono::steady_clock::now() < end && goOn())
        std::this_thread::sleep_for(kStep);
}

// Only an attempt shows every reason: permissions alone say nothing about a port that is in use.
gps::Error explainPortFailure(const std::string& port)
{
    const auto serial = gps::OrvSerial::create();
    const int errorNumber = serial ? serial->openWithDevicePath(port.c_str()) : ENOMEM;
    if (errorNumber == 0)
        serial->close();
    return explainPortFailure(port, errorNumber);
}

gps::Error explainPortFailure(const std::string& port, int errorNumber)
{
    switch (errorNumber) {
    case 0:
        return hostError(tr(kPortIsFree), tr("Try again"), port);
    case EBUSY:
        return busyPort(port);
    case EACCES:
    case EPERM:
        return hostError(tr("You do not have permission to use the port"), adviceFor(port), port);
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return hostError(tr("The port is gone"),
                         tr("Plug the receiver or its adapter in again") +
                             advice(", and run \"magellangps devices\" to see the ports", ""),
                         port);
    case ENOTTY:
        return hostError(tr("This is not a serial port"),
                         advice("Run \"magellangps devices\" to see the ports",
                                tr("Choose one of those that are listed")),
                         port);
    default:
        return systemError(
            tr("The port cannot be opened"),
            tr("Unplug the receiver or its adapter, plug it in again, and try again"), port,
            errorNumber);
    }
}

std::string permissionAdvice(const ::group* owner, std::string_view user)
{
    if (owner == nullptr)
        return tr(
            "Only its owner may use it; ask the administrator of this computer for permission "
            "to read and write it");
    // Groups are read at login, so a member without access joined after logging in. Users whose
    // primary group it is are not listed, but they have access.
    for (char** member = owner->gr_mem; *member != nullptr; ++member) {
        if (*member == user)
            return trFormat("Members of the group {0} may use it. You joined this group after "
                            "you logged in: log out and in again",
                            owner->gr_name);
    }
    return trFormat("Members of the group {0} may use it. Join the group with \"sudo usermod "
                    "-aG {0} {1}\", then log out and in again",
                    owner->gr_name, user);
}

gps::Error describeSerialError(const gps::Error& reported, const std::string& port)
{
    if (reported.description())
        return reported;
    return {reported.domain(),
            reported.code(),
            {{gps::kErrorDescriptionKey,
              trFormat("The connection to the receiver broke off (error {})", reported.code())},
             {gps::kErrorSuggestionKey,
              tr("Check the cable, make sure that the receiver is on, and try again")},
             {gps::kErrorPathKey, port}}};
}

} // namespace host
