// SPDX-License-Identifier: MIT

#include "host/files/OutputFile.h"

#include "host/base/HostError.h"
#include "host/files/IgnoredSignal.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// What a signal removes. Static, so that the handler may look at it whatever else is going on.
std::array<char, PATH_MAX> doomedPath{};
std::atomic<bool> isDoomed{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void removeAndGo(int signal)
{
    if (isDoomed)
        ::unlink(doomedPath.data());
    ::raise(signal); // the handler is gone by now: the signal takes its default course
}

void removeOnSignal(const std::string& path)
{
    if (path.size() >= doomedPath.size())
        return;
    std::memcpy(doomedPath.data(), path.c_str(), path.size() + 1);
    isDoomed = true;
    struct sigaction action {};
    action.sa_handler = removeAndGo;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        if (!isIgnored(signal))
            ::sigaction(signal, &action, nullptr);
    }
}

// Where a link leads: a file is replaced at its own place, not the link to it.
fs::path resolved(const fs::path& path)
{
    std::error_code error;
    auto real = fs::canonical(path, error);
    return error ? path : real;
}

// A name that nobody has; the mode is what the user's mask leaves.
int createHidden(const fs::path& folder, std::string& path)
{
    const auto start = (folder / ".magellangps-").string() + std::to_string(::getpid());
    for (int attempt = 0;; ++attempt) {
        path = start + '-' + std::to_string(attempt);
        const int file =
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST)
            return file;
    }
}

} // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)) {}

OutputFile::~OutputFile()
{
    if (file_ >= 0 && file_ != STDOUT_FILENO)
        ::close(file_);
    if (!hiddenPath_.empty())
        ::unlink(hiddenPath_.c_str());
    isDoomed = false;
}

std::optional<gps::Error> OutputFile::open()
{
    std::error_code ignored;
    const auto present = fs::status(path_, ignored).type();
    if (path_ == "-" || (fs::exists(fs::file_status{present}) && present != fs::file_type::regular))
        return openDirectly();

    path_ = resolved(path_).string();
    folder_ = fs::path{path_}.parent_path().string();
    if (folder_.empty())
        folder_.push_back('.');
    file_ = createHidden(folder_, hiddenPath_);
    if (file_ < 0) {
        hiddenPath_.clear();
        return refusal("The output file cannot be made", errno);
    }
    removeOnSignal(hiddenPath_);
    struct stat older {};
    if (::stat(path_.c_str(), &older) == 0)
        (void)!::fchmod(file_, older.st_mode & 07777);
    output_.emplace(file_, path_);
    return std::nullopt;
}

std::optional<gps::Error> OutputFile::openDirectly()
{
    std::error_code ignored;
    folder_ = fs::temp_directory_path(ignored).string();
    const bool isStandard = path_ == "-";
    file_ = isStandard ? STDOUT_FILENO : ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0)
        return refusal("The output file cannot be opened", errno);
    output_.emplace(file_, isStandard ? "the standard output" : path_);
    return std::nullopt;
}

std::optional<gps::Error> OutputFile::commit()
{
    return finishAs(path_);
}

std::optional<gps::Error> OutputFile::keepPartial()
{
    return finishAs(partialPath());
}

std::string OutputFile::partialPath() const
{
    if (hiddenPath_.empty())
        return {};
    fs::path path{path_};
    const auto extension = path.extension();
    return path.replace_extension(".partial").concat(extension.native()).string();
}

std::optional<gps::Error> OutputFile::finishAs(const std::string& path)
{
    if (auto failure = output_->flush())
        return failure;
    if (hiddenPath_.empty())
        return std::nullopt;
    if (::fsync(file_) != 0)
        return refusal("The output file cannot be written", errno);
    if (::rename(hiddenPath_.c_str(), path.c_str()) != 0)
        return refusal("The output file cannot be given its name", errno);
    hiddenPath_.clear();
    isDoomed = false;
    // A memory card's file system writes the size of a renamed file only when it is flushed once
    // more.
    if (::fsync(file_) != 0)
        return refusal("The output file is not safely on the medium", errno);
    if (const int folder = ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return std::nullopt;
}

gps::Error OutputFile::refusal(std::string_view what, int code) const
{
    return systemError(what, "Choose another place to write to, and try again", path_, code);
}

} // namespace host
