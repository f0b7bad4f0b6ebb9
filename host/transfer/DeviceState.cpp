// SPDX-License-Identifier: MIT
// The number of a file is not compared: on vfat it changes whenever the system has forgotten the
// file. The times of folders change with each unfinished file, so only their names count.

#include "host/transfer/DeviceState.h"

#include "host/files/TemporaryName.h"

#include <platform/System/FileManager.h>

#include <utility>

#include <sys/stat.h>

namespace host {
namespace {

std::int64_t nanosecondsOf(const timespec& time) noexcept
{
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    return time.tv_sec * kPerSecond + time.tv_nsec;
}

} // namespace

DeviceState DeviceState::of(const std::string& location, const std::vector<std::string>& folders,
                            gps::FileSystem& files)
{
    DeviceState state;
    struct stat root;
    if (files.stat(location.c_str(), &root) == 0) {
        state.volume_ = root.st_dev;
        state.root_ = root.st_ino;
    }
    for (const auto& folder : folders)
        state.addFolder(folder, files);
    return state;
}

void DeviceState::addFolder(const std::string& folder, gps::FileSystem& files)
{
    folders_.push_back(folder);
    auto entries = gps::FileManager{&files}.enumerator(folder);
    while (const auto entry = entries.next()) {
        auto path = gps::joinPath(folder, entry->relativePath);
        struct stat status;
        if (isTemporaryName(gps::lastComponent(path)))
            continue;
        if (entry->isFolder)
            folders_.push_back(std::move(path));
        else if (files.stat(path.c_str(), &status) == 0)
            files_.push_back({std::move(path), status.st_size, nanosecondsOf(status.st_mtim),
                              nanosecondsOf(status.st_ctim)});
    }
}

} // namespace host
