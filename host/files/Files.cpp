// SPDX-License-Identifier: MIT

#include "host/files/Files.h"

#include "host/base/HostError.h"

#include <platform/System/AtomicWrite.h>
#include <platform/System/FileSystem.h>

#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace host {

std::optional<gps::Error> makeFolders(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error)
        return systemError("A folder cannot be made", "Check its permissions and the space there",
                           path, error.value());
    return std::nullopt;
}

std::optional<gps::Error> writeFile(const std::string& path, std::string_view bytes)
{
    if (auto failure = makeFolders(std::filesystem::path{path}.parent_path().string()))
        return failure;
    if (const int code = gps::writeAtomically(gps::FileSystem::system(), path, bytes))
        return systemError("A file cannot be written", "Check its permissions and the space there",
                           path, code);
    return std::nullopt;
}

void flushFolder(const std::string& path)
{
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    (void)::fsync(folder);
    ::close(folder);
}

} // namespace host
