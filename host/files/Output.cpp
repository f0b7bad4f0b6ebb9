// SPDX-License-Identifier: MIT
// Texts larger than the buffer bypass it, so that each byte is copied at most once.

#include "host/files/Output.h"

#include "host/base/HostError.h"
#include "host/files/TemporaryName.h"

#include <gps/NumberText.h>
#include <platform/System/FullTransfer.h>
#include <platform/System/Paths.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
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

Output::Output(int file, std::string name, gps::FileSystem& files, Kind kind)
    : files_(files), file_(file), name_(std::move(name)), kind_(kind),
      buffer_(new char[kBufferSize])
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
void Output::forEachPiece(int file, const std::function<void(std::string_view)>& use)
{
    off_t offset = 0;
    auto count = readPiece(file, offset, kBufferSize);
    while (count > 0) {
        use({buffer_.get(), count});
        offset += static_cast<off_t>(count);
        count = readPiece(file, offset, kBufferSize);
    }
}

void Output::writeFrom(int file)
{
    flush();
    forEachPiece(file, [this](std::string_view piece) { writeOut(piece); });
}

void Output::insertFrom(int file, off_t count, off_t offset)
{
    flush();
    moveTail(offset, count);
    forEachPiece(file, [&](std::string_view piece) {
        writePiece(piece.size(), offset);
        offset += static_cast<off_t>(piece.size());
    });
    written_ += count;
    if (!failure_ && files_.lseek(file_, written_, SEEK_SET) < 0)
        fail("The output cannot be continued", errno);
}

void Output::overwrite(off_t offset, std::string_view text)
{
    flush(); // some of what is replaced may be in the buffer
    if (failure_)
        return;
    if (const int code = gps::writeAt(files_, file_, offset, text))
        fail("The output cannot be written", code);
}

// Starts at the end, so that no byte is overwritten before it was moved.
void Output::moveTail(off_t offset, off_t distance)
{
    for (off_t end = written_; end > offset && !failure_;) {
        const auto piece = std::min<off_t>(end - offset, kBufferSize);
        end -= piece;
        const auto count = readPiece(file_, end, static_cast<std::size_t>(piece));
        writePiece(count, end + distance);
    }
}

// Returns 0 at the end of the file and after a failure.
std::size_t Output::readPiece(int file, off_t offset, std::size_t most)
{
    std::size_t count = 0;
    if (failure_)
        return 0;
    if (const int code = gps::readAt(files_, file, offset, buffer_.get(), most, count)) {
        fail("Temporary data cannot be read back", code);
        return 0;
    }
    return count;
}

void Output::writePiece(std::size_t count, off_t offset)
{
    if (const int code = gps::writeAt(files_, file_, offset, {buffer_.get(), count}))
        fail("The output cannot be written", code);
}

void Output::writeOut(std::string_view text)
{
    if (text.empty() || failure_)
        return;
    written_ += static_cast<off_t>(text.size());
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
    : Output(openSpool(files, folder), folder, files, Kind::kFile)
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
    if (!isReadable(output))
        return;
    output.writeFrom(file());
    clear(output);
}

void Spool::insertInto(Output& output, off_t offset)
{
    if (!isReadable(output))
        return;
    output.insertFrom(file(), size(), offset);
    clear(output);
}

void Spool::readBack(Output& output, const std::function<void(std::string_view)>& use)
{
    if (!isReadable(output))
        return;
    forEachPiece(file(), use);
    (void)isReadable(output);
}

bool Spool::isReadable(Output& output)
{
    const auto failure = flush();
    if (failure)
        output.fail(*failure);
    return !failure;
}

// Without the seek, the next text would be written behind a hole of zeros.
void Spool::clear(Output& output)
{
    if (files().ftruncate(file(), 0) != 0 || files().lseek(file(), 0, SEEK_SET) != 0)
        output.fail(systemError("Temporary data cannot be cleared", "Try again", name(), errno));
    countFromZero();
}

} // namespace host
