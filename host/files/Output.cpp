// SPDX-License-Identifier: MIT
// Texts larger than the buffer bypass it, so that each byte is copied at most once.

#include "host/files/Output.h"

#include "host/base/HostError.h"
#include "host/files/TemporaryName.h"

#include <gps/NumberText.h>
#include <platform/System/FullTransfer.h>
#include <platform/System/Paths.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

constexpr mode_t kPrivate = 0600;

int openUnnamed(gps::FileSystem& files, const std::string& folder)
{
    const int file = files.open(folder.c_str(), O_TMPFILE | O_RDWR, kPrivate);
    if (file >= 0)
        return file;
    // The file system has no unnamed files: create one, and remove its name at once.
    auto prefix = gps::joinPath(folder, kHiddenPrefix);
    gps::appendInteger(prefix, ::getpid());
    for (int attempt = 0;; ++attempt) {
        const auto path = prefix + '-' + std::to_string(attempt);
        const int named =
            files.open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, kPrivate);
        if (named >= 0)
            (void)files.unlink(path.c_str());
        if (named >= 0 || errno != EEXIST)
            return named;
    }
}

int openSpool(gps::FileSystem& files, const std::string& folder)
{
    if (const int file = openUnnamed(files, folder); file >= 0)
        return file;
    const int failure = errno;
    std::error_code code;
    const auto temporary = std::filesystem::temp_directory_path(code);
    if (!code)
        return openUnnamed(files, temporary.string());
    errno = failure;
    return -1;
}

} // namespace

Output::Output(int file, std::string name, gps::FileSystem& files)
    : files_(files), file_(file), name_(std::move(name)), buffer_(new char[kBufferSize])
{}

void Output::writePast(std::string_view text)
{
    flush();
    if (text.size() > kBufferSize)
        writeOut(text);
    else
        write(text);
}

std::optional<gps::Error> Output::flush()
{
    writeOut({buffer_.get(), used_});
    used_ = 0;
    return failure_;
}

// Reads by offset, so the other file's own position does not matter.
void Output::writeFrom(int file)
{
    flush();
    std::array<char, kBufferSize> piece;
    std::size_t count = 0;
    for (off_t offset = 0; !failure_; offset += static_cast<off_t>(count)) {
        if (const int code = gps::readAt(files_, file, offset, piece.data(), piece.size(), count))
            fail("Temporary data cannot be read back", code);
        else if (count == 0)
            return;
        else
            writeOut({piece.data(), count});
    }
}

void Output::writeOut(std::string_view text)
{
    if (text.empty() || failure_)
        return;
    if (const int code = gps::writeAll(files_, file_, text))
        fail("The output cannot be written", code);
}

void Output::fail(std::string_view what, int code)
{
    fail(
        systemError(what, "Free some space, or write to another disk, and try again", name_, code));
}

void Output::fail(const gps::Error& failure)
{
    if (!failure_)
        failure_ = failure;
}

Spool::Spool(const std::string& folder, gps::FileSystem& files)
    : Output(openSpool(files, folder), folder, files)
{
    if (file() < 0)
        fail(systemError("Temporary data cannot be stored",
                         "Free some space, or write to another disk, and try again", folder,
                         errno));
}

Spool::~Spool()
{
    if (file() >= 0)
        (void)files().close(file());
}

void Spool::moveTo(Output& output)
{
    if (const auto failure = flush()) {
        output.fail(*failure);
        return;
    }
    output.writeFrom(file());
    // Without the seek, the next text would be written behind a hole of zeros.
    if (files().ftruncate(file(), 0) != 0 || files().lseek(file(), 0, SEEK_SET) != 0)
        output.fail(systemError("Temporary data cannot be cleared", "Try again", name(), errno));
}

} // namespace host
