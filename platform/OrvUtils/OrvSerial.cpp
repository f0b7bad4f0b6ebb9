// SPDX-License-Identifier: MIT
// The only source that uses termios. The line is non-blocking: every wait is a poll() with a
// deadline, so that neither an unplugged cable nor a blocked receiver can hang a session.

#include "OrvSerial.h"

#include "SerialTraffic.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace gps {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestText = 4096;         ///< bytes; only the end of longer text is kept
constexpr std::chrono::seconds kOutputLimit{1};    ///< for the line to accept or send all output
constexpr std::chrono::milliseconds kDrainStep{1}; ///< between checks of the output queue

constexpr std::array<std::pair<int, speed_t>, 9> kSpeeds{{
    {0, B0},
    {1200, B1200},
    {2400, B2400},
    {4800, B4800},
    {9600, B9600},
    {19200, B19200},
    {38400, B38400},
    {57600, B57600},
    {115200, B115200},
}};

struct Counters {
    std::atomic<std::uint64_t> bytesRead{0};
    std::atomic<std::uint64_t> bytesWritten{0};
    std::atomic<std::uint64_t> linesRead{0};
    std::atomic<int> bitsPerSecond{0};
};

constinit Counters theTraffic;

void count(std::atomic<std::uint64_t>& counter, std::uint64_t more)
{
    counter.fetch_add(more, std::memory_order_relaxed);
}

/// Locks the line. The lock stops other programs that lock, including those of root.
/// @return  0 or errno; ENOTTY if it is not a serial line
int claim(int line)
{
    termios present;
    if (::tcgetattr(line, &present) != 0)
        return errno;
    if (::flock(line, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EBUSY;
    return 0;
}

/// Sets everything that the transfer depends on, because the last user may have left the line in
/// any state, and drops unread input.
/// @return  0 or errno; EINVAL if the line did not accept a setting
int configure(int line, speed_t speed)
{
    termios wanted;
    if (::tcgetattr(line, &wanted) != 0)
        return errno;
    ::cfmakeraw(&wanted);
    wanted.c_iflag &= ~tcflag_t{IXOFF | IXANY | INPCK};
    wanted.c_cflag &= ~tcflag_t{CSTOPB | CRTSCTS};
    wanted.c_cflag |= tcflag_t{CLOCAL | CREAD};
    ::cfsetspeed(&wanted, speed);

    // tcsetattr() succeeds if it could make any one of the changes: read back what was set.
    termios taken;
    if (::tcsetattr(line, TCSANOW, &wanted) != 0 || ::tcgetattr(line, &taken) != 0)
        return errno;
    constexpr tcflag_t kFrame = CSIZE | PARENB | CSTOPB;
    if (::cfgetospeed(&taken) != speed || (taken.c_cflag & kFrame) != (wanted.c_cflag & kFrame))
        return EINVAL;
    ::tcflush(line, TCIFLUSH);
    return 0;
}

/// Waits until pending output is sent. Drops what a blocked line has not sent within the limit.
void drain(int line)
{
    // tcdrain() has no time limit, so the queue is watched until it is empty.
    const auto deadline = Clock::now() + kOutputLimit;
    int waiting = 0;
    while (::ioctl(line, TIOCOUTQ, &waiting) == 0 && waiting > 0) {
        if (Clock::now() >= deadline) {
            ::tcflush(line, TCOFLUSH);
            return;
        }
        std::this_thread::sleep_for(kDrainStep);
    }
    while (::tcdrain(line) != 0 && errno == EINTR) { // for the few bytes in the hardware
    }
}

/// Waits until the line is ready for an event or has failed.
/// @return  the events of poll(); 0 at the deadline and after a signal
short waitFor(int line, short event, Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd watched{line, event, 0};
    return ::poll(&watched, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, INT_MAX))) > 0
               ? watched.revents
               : short{0};
}

class SerialLine final : public OrvSerial {
public:
    SerialLine() = default;
    ~SerialLine() override { close(); }
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;

    void setBaudRate(int bitsPerSecond) override;
    int openWithDevicePath(const char* path) override;
    void sendString(std::string_view text, StringEncoding encoding) override;
    std::optional<std::string> readStringTo(std::string_view terminator,
                                            float timeoutSeconds) override;
    [[nodiscard]] std::uint64_t bytesReceived() const noexcept override { return bytesReceived_; }
    void close() override;

private:
    using Speed = std::pair<int, speed_t>;

    [[nodiscard]] bool isOpen() const { return line_ >= 0; }
    void receive(short state);
    std::optional<std::string> takeTextTo(std::string_view terminator, std::size_t& from);
    [[noreturn]] void fail(const std::string& what, int error) const;

    int line_ = -1;
    std::string path_;
    Speed speed_{4800, B4800}; ///< the default speed of receivers
    std::string received_;     ///< read from the line but not yet returned
    std::uint64_t bytesReceived_ = 0;
    bool writeFailed_ = false;
};

void SerialLine::setBaudRate(int bitsPerSecond)
{
    const auto* const speed = std::find_if(kSpeeds.begin(), kSpeeds.end(), [&](const Speed& each) {
        return each.first == bitsPerSecond;
    });
    if (speed == kSpeeds.end())
        throw SerialFailure{"unsupported serial line speed: " + std::to_string(bitsPerSecond) +
                            " bits per second"};
    speed_ = *speed;
    if (!isOpen())
        return;
    drain(line_);
    if (const int error = configure(line_, speed_.second))
        fail("speed " + std::to_string(bitsPerSecond), error);
    received_.clear();
    theTraffic.bitsPerSecond.store(bitsPerSecond, std::memory_order_relaxed);
}

int SerialLine::openWithDevicePath(const char* path)
{
    close();
    const int line = ::open(path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (line < 0)
        return errno;
    int error = claim(line);
    if (error == 0)
        error = configure(line, speed_.second);
    if (error != 0) {
        ::close(line); // no tcflush(): another program may be using the line
        return error;
    }
    (void)::ioctl(line, TIOCEXCL); // stops programs that do not lock, if the driver supports it
    line_ = line;
    path_ = path;
    theTraffic.bitsPerSecond.store(speed_.first, std::memory_order_relaxed);
    return 0;
}

void SerialLine::sendString(std::string_view text, StringEncoding /*encoding*/)
{
    const auto deadline = Clock::now() + kOutputLimit;
    while (isOpen() && !text.empty() && !writeFailed_) {
        const ssize_t written = ::write(line_, text.data(), text.size());
        if (written > 0) {
            count(theTraffic.bytesWritten, static_cast<std::uint64_t>(written));
            text.remove_prefix(static_cast<std::size_t>(written));
        } else {
            writeFailed_ = (errno != EAGAIN && errno != EINTR) || Clock::now() >= deadline;
            waitFor(line_, POLLOUT, deadline);
        }
    }
}

std::optional<std::string> SerialLine::readStringTo(std::string_view terminator,
                                                    float timeoutSeconds)
{
    if (!isOpen())
        return std::nullopt;
    if (writeFailed_)
        fail("write", EIO);
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                             std::chrono::duration<float>{timeoutSeconds});
    std::size_t from = 0;
    auto text = takeTextTo(terminator, from);
    for (bool inTime = true; !text && inTime;) {
        inTime = Clock::now() < deadline; // input that is already there counts after it, too
        if (const short state = waitFor(line_, POLLIN, deadline)) {
            receive(state);
            text = takeTextTo(terminator, from);
        }
    }
    return text;
}

/// Reads the available input. An empty read or an error means that the line was unplugged or hung
/// up.
void SerialLine::receive(short state)
{
    std::array<char, 4096> piece;
    const ssize_t size = ::read(line_, piece.data(), piece.size());
    if (size > 0) {
        received_.append(piece.data(), static_cast<std::size_t>(size));
        bytesReceived_ += static_cast<std::uint64_t>(size);
        count(theTraffic.bytesRead, static_cast<std::uint64_t>(size));
        return;
    }
    const int error = size < 0 ? errno : EIO;
    const bool hungUp = (state & (POLLHUP | POLLERR)) != 0;
    if (error != EINTR && (error != EAGAIN || hungUp))
        fail("read", error);
}

/// Removes and returns the text before the first terminator at or after `from`. If there is none,
/// advances `from` past everything that cannot be the start of a split terminator.
std::optional<std::string> SerialLine::takeTextTo(std::string_view terminator, std::size_t& from)
{
    const auto end = received_.find(terminator, from);
    if (end == std::string::npos) {
        const auto kept = std::min(received_.size(), kLongestText + terminator.size() - 1);
        received_.erase(0, received_.size() - kept);
        from = kept - std::min(kept, terminator.size() - 1);
        return std::nullopt;
    }
    const auto size = std::min(end, kLongestText);
    auto text = received_.substr(end - size, size);
    received_.erase(0, end + terminator.size());
    count(theTraffic.linesRead, 1);
    return text;
}

void SerialLine::close()
{
    if (!isOpen())
        return;
    ::tcflush(line_, TCOFLUSH);     // close() may wait for output on a blocked line
    (void)::ioctl(line_, TIOCNXCL); // otherwise a pseudo-terminal could not be opened again
    ::close(std::exchange(line_, -1));
    received_.clear();
    writeFailed_ = false;
}

void SerialLine::fail(const std::string& what, int error) const
{
    throw SerialFailure{path_ + ": " + what + ": " + std::generic_category().message(error)};
}

} // namespace

std::unique_ptr<OrvSerial> OrvSerial::create()
{
    return std::make_unique<SerialLine>();
}

SerialTraffic serialTraffic() noexcept
{
    constexpr auto kRelaxed = std::memory_order_relaxed;
    return {theTraffic.bytesRead.load(kRelaxed), theTraffic.bytesWritten.load(kRelaxed),
            theTraffic.linesRead.load(kRelaxed), theTraffic.bitsPerSecond.load(kRelaxed)};
}

} // namespace gps
