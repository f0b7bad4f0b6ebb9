// SPDX-License-Identifier: MIT
// A pseudo-terminal has no notion of speed and reports neither its opening nor a change of the
// other side's settings, so both are polled.

#include "Wire.h"

#include "LineSpeeds.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace simulator {
namespace {

constexpr std::size_t kPiece = 16;             // bytes that a serial chip delivers at once
constexpr std::size_t kLongestLine = 1U << 16; // commands are short; longer lines are cut
constexpr auto kTick = std::chrono::milliseconds{5};

[[noreturn]] void fail(const char* what)
{
    throw std::system_error{errno, std::generic_category(), what};
}

int openOtherSide(const std::string& path)
{
    return ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
}

// Switches the terminal to raw mode before anyone opens it: by default it echoes, which would send
// the receiver its own sentences. The other side must have been opened and closed once, because
// only then the master reports that it is closed.
void prepare(int master, const std::string& path)
{
    termios settings{};
    const int other = openOtherSide(path);
    if (other < 0)
        fail("cannot open the pseudo-terminal");
    ::tcgetattr(master, &settings);
    ::cfmakeraw(&settings);
    ::cfsetspeed(&settings, B0); // so that any speed the other side sets is a change
    ::tcsetattr(master, TCSANOW, &settings);
    ::close(other);
}

} // namespace

Wire::Wire(bool paced)
    : paced_(paced), master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    std::array<char, 128> name{};
    if (master_ < 0)
        fail("cannot open a pseudo-terminal");
    try {
        if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0 ||
            ::ptsname_r(master_, name.data(), name.size()) != 0)
            fail("cannot set up the pseudo-terminal");
        path_ = name.data();
        prepare(master_, path_);
    } catch (...) {
        ::close(master_);
        throw;
    }
}

Wire::~Wire()
{
    ::close(master_);
}

void Wire::read()
{
    std::array<char, 4096> bytes;
    std::string written;
    ssize_t count = 0;
    while ((count = ::read(master_, bytes.data(), bytes.size())) > 0)
        written.append(bytes.data(), static_cast<std::size_t>(count));
    open_ = count == 0 || errno != EIO; // EIO: nobody has the terminal open
    // Queried after the bytes: if the other side changes its speed and writes at once, its bytes
    // count as sent at the new speed.
    termios settings{};
    ::tcgetattr(master_, &settings);
    otherSpeed_ = bitsPerSecond(::cfgetospeed(&settings));
    schedule(written);
}

void Wire::schedule(std::string_view bytes)
{
    if (bytes.empty())
        return;
    const auto each = paced_ ? byteTime(otherSpeed_) : Clock::duration{};
    inFree_ = std::max(inFree_, Clock::now());
    for (const char byte : bytes) {
        inFree_ += each;
        if (byte == '\n')
            arriving_.push_back({std::exchange(partial_, {}), otherSpeed_, inFree_});
        else if (partial_.size() < kLongestLine)
            partial_ += byte;
    }
}

std::optional<ArrivedLine> Wire::nextLine()
{
    if (arriving_.empty() || arriving_.front().when > Clock::now())
        return std::nullopt;
    auto line = std::move(arriving_.front());
    arriving_.pop_front();
    return line;
}

void Wire::send(std::string bytes, Clock::time_point earliest, int speed)
{
    sending_ = true;
    out_ = std::move(bytes);
    written_ = 0;
    outSpeed_ = speed;
    outBegin_ = std::max(earliest, outFree_);
    // What nobody receives is paced in any case. Otherwise a stream would keep the processor busy.
    outByteTime_ = paced_ || !isHeard() ? byteTime(speed) : Clock::duration{};
}

std::optional<Clock::time_point> Wire::write()
{
    const auto dueBytes = bytesDue();
    full_ = false;
    while (written_ < dueBytes && !full_) {
        // At another speed the other side would receive noise; here it receives nothing.
        const auto piece = dueBytes - written_;
        const auto count = isHeard() ? ::write(master_, out_.data() + written_, piece)
                                     : static_cast<ssize_t>(piece);
        full_ = count <= 0;
        written_ += full_ ? 0 : static_cast<std::size_t>(count);
    }
    if (written_ < out_.size())
        return std::nullopt;
    sending_ = false;
    outFree_ = outBegin_ + outByteTime_ * static_cast<Clock::rep>(out_.size());
    return outFree_;
}

// Whole pieces whose last byte has been sent.
std::size_t Wire::bytesDue() const noexcept
{
    const auto passed = Clock::now() - outBegin_;
    if (passed >= outByteTime_ * static_cast<Clock::rep>(out_.size()))
        return out_.size();
    return passed < Clock::duration{}
               ? 0
               : static_cast<std::size_t>(passed / outByteTime_) / kPiece * kPiece;
}

void Wire::clear()
{
    partial_.clear();
    arriving_.clear();
    sending_ = false;
    full_ = false;
    // Bytes written after the closing would be delivered to the next one who opens the line.
    if (const int other = openOtherSide(path_); other >= 0) {
        ::tcflush(other, TCIFLUSH);
        ::close(other);
    }
}

// When the last byte of the next piece is sent.
Clock::time_point Wire::due() const noexcept
{
    return outBegin_ +
           outByteTime_ * static_cast<Clock::rep>(std::min(written_ + kPiece, out_.size()));
}

void Wire::wait(Clock::time_point until, int stop) const
{
    const auto now = Clock::now();
    until = std::min(until, now + kTick); // speed changes and openings must be polled
    if (!arriving_.empty())
        until = std::min(until, arriving_.front().when);
    if (sending_ && !full_)
        until = std::min(until, due());
    const auto left = std::max(until - now, Clock::duration{});
    const timespec limit{0, std::chrono::nanoseconds{left}.count()};
    // A closed line is left out: poll() would report it as hung up each time.
    std::array<pollfd, 2> files{{{stop, POLLIN, 0}, {open_ ? master_ : -1, POLLIN, 0}}};
    if (full_)
        files[1].events |= POLLOUT;
    ::ppoll(files.data(), files.size(), &limit, nullptr);
}

} // namespace simulator
