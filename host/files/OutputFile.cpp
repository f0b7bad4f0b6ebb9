// SPDX-License-Identifier: MIT
// The platform's AtomicFile writes and renames. This class adds what a command-line program needs:
// links are followed, devices are written directly, and an interrupted program removes its file.

#include "host/files/OutputFile.h"

#include "host/base/HostError.h"
#include "host/files/IgnoredSignal.h"
#include "host/files/TemporaryName.h"

#include <gps/NumberText.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// Files of other processes in the folder have other numbers.
std::string hiddenPrefix()
{
    return std::string{kHiddenPrefix} + std::to_string(::getpid()) + '-';
}

// An unfinished file. In static arrays, because a signal handler must not touch an object that the
// interrupted code may be changing.
struct UnfinishedFile {
    enum State { kFree, kTaken, kReady };

    std::atomic<State> state{kFree};
    std::array<char, PATH_MAX> path{}; // while it is kReady
};
std::array<UnfinishedFile, 4> unfinishedFiles{};
static_assert(std::atomic<UnfinishedFile::State>::is_always_lock_free);

extern "C" void removeAndRaise(int signal)
{
    for (auto& file : unfinishedFiles) {
        if (file.state == UnfinishedFile::kReady)
            ::unlink(file.path.data());
    }
    ::raise(signal); // SA_RESETHAND has restored the default action, which ends the process
}

// nullopt if there are too many.
std::optional<std::size_t> noteUnfinished(const std::string& path)
{
    for (std::size_t i = 0; i < unfinishedFiles.size(); ++i) {
        auto& file = unfinishedFiles[i];
        auto expected = UnfinishedFile::kFree;
        if (!file.state.compare_exchange_strong(expected, UnfinishedFile::kTaken))
            continue;
        std::memcpy(file.path.data(), path.c_str(), path.size() + 1);
        file.state = UnfinishedFile::kReady;
        return i;
    }
    return std::nullopt;
}

void forgetUnfinished(std::optional<std::size_t>& number)
{
    if (number)
        unfinishedFiles[*number].state = UnfinishedFile::kFree;
    number.reset();
}

// A file that cannot be noted stays behind if a signal ends the process; the next download into its
// folder removes it.
std::optional<std::size_t> removeOnSignal(const std::string& path)
{
    const auto number = path.size() < PATH_MAX ? noteUnfinished(path) : std::nullopt;
    if (!number)
        return std::nullopt;
    struct sigaction action {};
    action.sa_handler = removeAndRaise;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        if (!isIgnored(signal))
            ::sigaction(signal, &action, nullptr);
    }
    return number;
}

constexpr std::uint32_t kLargestProcess = std::numeric_limits<pid_t>::max();

// Whether a hidden file was left by a process that was killed. The number alone does not show it:
// the folder may be shared with another machine, or with a container.
bool isStray(const std::string& path, std::string_view name, gps::FileSystem& files)
{
    if (!name.starts_with(kHiddenPrefix) || !isTemporaryName(name))
        return false;
    const auto numbers = name.substr(kHiddenPrefix.size());
    const auto process = gps::wholeUnsigned(numbers.substr(0, numbers.find('-')));
    if (!process || *process == 0 || *process > kLargestProcess ||
        ::kill(static_cast<pid_t>(*process), 0) == 0 || errno != ESRCH)
        return false;
    // O_NONBLOCK: opening a FIFO would wait for somebody to write into it.
    const gps::OpenFile file{files,
                             files.open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0)};
    return file && files.flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

void removeStrays(const std::string& folder, gps::FileSystem& files)
{
    std::error_code ignored;
    std::vector<fs::path> strays;
    for (fs::directory_iterator entry{folder, ignored}; entry != fs::directory_iterator{};
         entry.increment(ignored)) {
        if (isStray(entry->path().string(), entry->path().filename().string(), files))
            strays.push_back(entry->path());
    }
    for (const auto& stray : strays)
        (void)files.unlink(stray.c_str());
}

// A link that leads nowhere is not resolved, so the output replaces it.
std::string withoutLinks(const std::string& path)
{
    std::error_code error;
    const auto real = fs::canonical(path, error);
    return error ? path : real.string(); // the file does not exist yet
}

const char* writingAdvice(int code)
{
    switch (code) {
    case EISDIR:
        return "Name a file in this folder";
    case ENOENT:
        return "Create the folder first, or choose another one";
    default:
        return "Choose another folder or disk, and try again";
    }
}

std::string folderOf(const std::string& path)
{
    const auto folder = fs::path{path}.parent_path().string();
    return folder.empty() ? "." : folder;
}

} // namespace

OutputFile::OutputFile(std::string path, gps::FileSystem& files)
    : files_(files), path_(std::move(path)), file_(files), device_(files, -1)
{}

OutputFile::~OutputFile()
{
    file_.discard();
    forgetUnfinished(unfinished_);
}

std::optional<gps::Error> OutputFile::open()
{
    struct stat present;
    const bool exists = files_.stat(path_.c_str(), &present) == 0;
    if (path_ == "-" || (exists && !S_ISREG(present.st_mode)))
        return openDirectly();

    path_ = withoutLinks(path_);
    folder_ = folderOf(path_);
    removeStrays(folder_, files_);
    // Without AtomicFile's lock: two downloads may write into one folder at the same time.
    if (const int code = file_.openUnlocked(path_, hiddenPrefix()))
        return errorFor("The output file cannot be created", code);
    unfinished_ = removeOnSignal(file_.temporaryPath());
    output_.emplace(file_.descriptor(), path_, files_, Output::Kind::kFile);
    return std::nullopt;
}

std::optional<gps::Error> OutputFile::openDirectly()
{
    std::error_code ignored;
    folder_ = fs::temp_directory_path(ignored).string();
    if (path_ == "-") {
        output_.emplace(STDOUT_FILENO, "the standard output", files_);
        return std::nullopt;
    }
    device_ = gps::OpenFile{files_, files_.open(path_.c_str(), O_WRONLY, 0)};
    if (!device_)
        return errorFor("The output file cannot be opened", errno);
    output_.emplace(device_.get(), path_, files_);
    return std::nullopt;
}

bool OutputFile::replacesMore() const
{
    struct stat present;
    return !file_.temporaryPath().empty() && files_.stat(path_.c_str(), &present) == 0 &&
           present.st_size > output_->size();
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
    if (file_.temporaryPath().empty())
        return {};
    fs::path path{path_};
    const auto extension = path.extension();
    return path.replace_extension(".partial").concat(extension.native()).string();
}

std::optional<gps::Error> OutputFile::finishAs(const std::string& path)
{
    if (auto failure = output_->flush())
        return failure;
    if (file_.temporaryPath().empty())
        return std::nullopt;
    const int code = file_.commitAs(fs::path{path}.filename().string());
    forgetUnfinished(unfinished_);
    if (code == 0)
        return std::nullopt;
    return errorFor(file_.isRenamed() ? "The output file may be lost if the medium is removed now"
                                      : "The output file cannot be written",
                    code);
}

gps::Error OutputFile::errorFor(std::string_view what, int code) const
{
    return systemError(what, writingAdvice(code), path_, code);
}

} // namespace host
