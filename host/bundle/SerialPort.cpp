// SPDX-License-Identifier: MIT

#include "host/bundle/SerialPort.h"

#include "host/base/HostError.h"

#include <platform/OrvUtils/OrvSerial.h>
#include <platform/System/UserDefaults.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <grp.h>
#include <pwd.h>
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

struct Group {
    std::string name;
    bool hasUser = false; // as a member beside those whose first group it is
};

// The group whose members may use the port; none when it has no such group.
std::optional<Group> groupOf(const std::string& port, const std::string& user)
{
    constexpr mode_t kReadAndWrite = S_IRGRP | S_IWGRP;
    struct stat status {};
    if (::stat(port.c_str(), &status) != 0 || (status.st_mode & kReadAndWrite) != kReadAndWrite)
        return std::nullopt;
    std::array<char, kRecordSize> texts{};
    group record{};
    group* found = nullptr;
    ::getgrgid_r(status.st_gid, &record, texts.data(), texts.size(), &found);
    if (found == nullptr)
        return std::nullopt;
    Group owning{found->gr_name};
    for (char** member = found->gr_mem; *member != nullptr; ++member)
        owning.hasUser |= *member == user;
    return owning;
}

std::string howToGetPermission(const std::string& port)
{
    const auto user = userName();
    const auto owning = groupOf(port, user);
    if (!owning)
        return "It is for its owner alone; ask whoever looks after this machine for the permission "
               "to read and write it";
    if (owning->hasUser)
        return "It is for the group " + owning->name +
               ", which you have joined since you logged in: log out, and in again";
    return "It is for the group " + owning->name + ". Join it with \"sudo usermod -aG " +
           owning->name + ' ' + user + "\", then log out, and in again";
}

} // namespace

bool isSerialPlace(const std::string& place)
{
    std::error_code ignored;
    const auto status = fs::status(place, ignored);
    return fs::is_character_file(status) || (place.starts_with("/dev/") && !fs::exists(status));
}

void useSerialPort(const std::string& place)
{
    auto& defaults = gps::UserDefaults::standard();
    gps::Array ports;
    for (auto& stored :
         defaults.stringArrayForKey(gps::kTestPortsKey).value_or(std::vector<std::string>{}))
        ports.emplace_back(std::move(stored));
    ports.emplace_back(place);
    defaults.setForThisRun(gps::kTestPortsKey, std::move(ports));
}

gps::Error whyPortFails(const std::string& port)
{
    const auto serial = gps::OrvSerial::create();
    const int errorNumber = serial ? serial->openWithDevicePath(port.c_str()) : ENOMEM;
    if (errorNumber == 0)
        serial->close();
    return whyPortFails(port, errorNumber);
}

gps::Error whyPortFails(const std::string& port, int errorNumber)
{
    switch (errorNumber) {
    case 0:
        return hostError("The port can be opened now", "Try again", port);
    case EBUSY:
        return hostError("Another program has the port open",
                         "Close that program, and try again; \"fuser -v " + port +
                             "\" tells which one it is",
                         port);
    case EACCES:
    case EPERM:
        return hostError("You have no permission to use the port", howToGetPermission(port), port);
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return hostError(
            "The port is gone",
            "Plug the receiver or its adapter in again, and see what \"magellangps devices\" lists",
            port);
    case ENOTTY:
        return hostError("This is no serial port", "See what \"magellangps devices\" lists", port);
    default:
        return systemError("The port cannot be opened",
                           "Unplug the receiver or its adapter, plug it in again, and try again",
                           port, errorNumber);
    }
}

gps::Error inWords(const gps::Error& reported, const std::string& port)
{
    if (reported.description())
        return reported;
    return {
        reported.domain(),
        reported.code(),
        {{gps::kErrorDescriptionKey, "The connection to the receiver broke off (error " +
                                         std::to_string(reported.code()) + ')'},
         {gps::kErrorSuggestionKey, "Check the cable, and that the receiver is on, and try again"},
         {gps::kErrorPathKey, port}}};
}

} // namespace host
