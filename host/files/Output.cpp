// SPDX-License-Identifier: MIT

#include "host/files/Output.h"

#include "host/base/HostError.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

int openUnnamed(const std::string& folder)
{
    const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file >= 0)
        return file;
    // A file system without unnamed files: one whose name is taken away at once.
    std::string name = folder + "/.magellangps-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0)
        ::unlink(name.c_str());
    return named;
}

int openSpool(const std::string& folder)
{
    if (const int file = openUnnamed(folder); file >= 0)
        return file;
    std::error_code ignored;
    return openUnnamed(std::filesystem::temp_directory_path(ignored).string());
}

} // namespace

Output::Output(int file, std::string name)
    : file_(file), name_(std::move(name)), buffer_(new char[kBufferSize])
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

void Output::writeFrom(int file)
{
    flush();
    std::array<char, kBufferSize> piece;
    for (off_t at = 0; !failure_;) {
        const ssize_t count = ::pread(file, piece.data(), piece.size(), at);
        if (count == 0)
            return;
        if (count < 0 && errno != EINTR)
            fail("Temporary data cannot be read back", errno);
        if (count > 0) {
            writeOut({piece.data(), static_cast<std::size_t>(count)});
            at += count;
        }
    }
}

void Output::writeOut(std::string_view text)
{
    while (!text.empty() && !failure_) {
        const ssize_t count = ::write(file_, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            fail("The output cannot be written", errno);
        if (count > 0)
            text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Output::fail(std::string_view what, int code)
{
    fail(systemError(what, "Free some space or choose another place to write to, and try again",
                     name_, code));
}

void Output::fail(const gps::Error& failure)
{
    if (!failure_)
        failure_ = failure;
}

Spool::Spool(const std::string& folder) : Output(openSpool(folder), folder) {}

Spool::~Spool()
{
    if (file() >= 0)
        ::close(file());
}

void Spool::moveTo(Output& output)
{
    if (const auto failure = flush()) {
        output.fail(*failure);
        return;
    }
    output.writeFrom(file());
    if (::ftruncate(file(), 0) != 0 || ::lseek(file(), 0, SEEK_SET) != 0)
        output.fail(systemError("Temporary data cannot be dropped", "Try again", name(), errno));
}

} // namespace host
