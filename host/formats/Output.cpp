// SPDX-License-Identifier: MIT

#include "host/formats/Output.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "host/operations/HostError.h"

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

Output::Output(int file, std::string name) : file_(file), name_(std::move(name))
{
    buffer_.reserve(kBufferSize);
}

void Output::write(std::string_view text)
{
    if (buffer_.size() + text.size() > kBufferSize) {
        writeOut(buffer_);
        buffer_.clear();
    }
    if (text.size() > kBufferSize)
        writeOut(text);
    else
        buffer_.append(text);
}

std::optional<gps::Error> Output::flush()
{
    writeOut(buffer_);
    buffer_.clear();
    return failure_;
}

void Output::writeFrom(int file)
{
    std::array<char, kBufferSize> piece;
    for (off_t at = 0; !failure_;) {
        const ssize_t count = ::pread(file, piece.data(), piece.size(), at);
        if (count == 0)
            return;
        if (count < 0 && errno != EINTR)
            fail("Temporary data cannot be read back", errno);
        if (count > 0) {
            write({piece.data(), static_cast<std::size_t>(count)});
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
    failure_ = systemError(what, "Free some space or choose another place with -o, and try again", name_, code);
}

Spool::Spool(const std::string& folder) : file_(openSpool(folder)), output_(file_, folder) {}

Spool::~Spool()
{
    if (file_ >= 0)
        ::close(file_);
}

std::optional<gps::Error> Spool::copyTo(Output& output)
{
    if (auto failure = output_.flush())
        return failure;
    output.writeFrom(file_);
    return std::nullopt;
}

} // namespace host
