// SPDX-License-Identifier: MIT
// PseudoTerminal: a serial port whose other end belongs to the test, which plays the receiver.

#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace support {

class PseudoTerminal {
public:
    PseudoTerminal() : far_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        std::array<char, 64> name{};
        if (far_ < 0 || ::grantpt(far_) != 0 || ::unlockpt(far_) != 0 ||
            ::ptsname_r(far_, name.data(), name.size()) != 0)
            throw std::runtime_error{"no pseudo-terminal"};
        path_ = name.data();
        near_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~PseudoTerminal()
    {
        hangUp();
        ::close(near_);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// The device to open.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// A descriptor of the device, as another program would have it open.
    [[nodiscard]] int otherProgram() const { return near_; }

    /// Writes as much at the far end as fits. @return  the number of bytes written
    std::size_t writeSome(std::string_view text) const
    {
        return static_cast<std::size_t>(
            std::max<ssize_t>(::write(far_, text.data(), text.size()), 0));
    }

    /// Writes all of it at the far end, however slowly it is read.
    void write(std::string_view text) const
    {
        while (!text.empty() && isReady(far_, POLLOUT))
            text.remove_prefix(writeSome(text));
        if (!text.empty())
            throw std::runtime_error{"nobody reads the line"};
    }

    /// Reads at the far end until this many bytes have arrived.
    [[nodiscard]] std::string read(std::size_t size) const
    {
        std::string text;
        std::array<char, 4096> piece;
        while (text.size() < size && isReady(far_, POLLIN)) {
            const ssize_t count =
                ::read(far_, piece.data(), std::min(piece.size(), size - text.size()));
            text.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return text;
    }

    /// Waits until what was written at the far end has begun to arrive.
    void waitForInput() const { (void)isReady(near_, POLLIN); }

    /// The line's settings, as the far end sees them.
    [[nodiscard]] termios settings() const
    {
        termios present{};
        ::tcgetattr(far_, &present);
        return present;
    }
    [[nodiscard]] speed_t speed() const
    {
        const termios present = settings();
        return ::cfgetospeed(&present);
    }

    /// Acts as if the cable was pulled out.
    void hangUp()
    {
        if (far_ >= 0)
            ::close(std::exchange(far_, -1));
    }

private:
    /// Waits, at most half a minute.
    static bool isReady(int end, short event)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{30};
        pollfd watched{end, event, 0};
        while (::poll(&watched, 1, 1000) <= 0)
            if (std::chrono::steady_clock::now() >= deadline)
                return false;
        return true;
    }

    int far_;
    int near_ = -1;
    std::string path_;
};

} // namespace support
