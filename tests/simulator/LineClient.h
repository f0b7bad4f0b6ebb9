// SPDX-License-Identifier: MIT
// LineClient: the other side of a simulated receiver's line. Shares no code with the driver, so
// that a mistake in one does not hide a mistake in the other.

#pragma once

#include "support/Sentence.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace support {

class LineClient {
public:
    LineClient(const std::string& path, speed_t speed)
        : line_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        if (line_ < 0)
            throw std::runtime_error{"cannot open " + path};
        setSpeed(speed);
    }
    ~LineClient() { ::close(line_); }
    LineClient(const LineClient&) = delete;
    LineClient& operator=(const LineClient&) = delete;

    void setSpeed(speed_t speed) const
    {
        termios settings{};
        ::tcgetattr(line_, &settings);
        ::cfsetspeed(&settings, speed);
        if (::tcsetattr(line_, TCSANOW, &settings) != 0)
            throw std::runtime_error{"the line does not accept this speed"};
    }

    void write(std::string_view bytes) const
    {
        if (::write(line_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            throw std::runtime_error{"the line does not accept bytes"};
    }

    /// Writes a body as a sentence.
    void say(std::string_view body) const { write(sentence(body) + "\r\n"); }

    /// Writes the acknowledgement of a body.
    void acknowledge(std::string_view body) const
    {
        say("PMGNCSM," + sentence(body).substr(body.size() + 2));
    }

    /// The next line without its end; "nothing" if none arrives within half a minute, "gone" if the
    /// port was removed.
    std::string line()
    {
        std::size_t end = 0;
        while ((end = buffer_.find("\r\n")) == std::string::npos) {
            if (const auto failure = receive(); !failure.empty())
                return failure;
        }
        auto text = buffer_.substr(0, end);
        buffer_.erase(0, end + 2);
        return text;
    }

    /// The bytes that arrived and were not read as lines, once there are `count`; fewer if no more
    /// arrive.
    const std::string& bytes(std::size_t count)
    {
        while (buffer_.size() < count && receive().empty()) {
        }
        return buffer_;
    }

private:
    // @return  why no bytes were received; empty if there are some
    std::string receive()
    {
        pollfd file{line_, POLLIN, 0};
        if (::poll(&file, 1, 30000) == 0)
            return "nothing";
        std::array<char, 4096> bytes;
        const auto count = ::read(line_, bytes.data(), bytes.size());
        if (count <= 0)
            return count < 0 && (errno == EINTR || errno == EAGAIN) ? "" : "gone";
        buffer_.append(bytes.data(), static_cast<std::size_t>(count));
        return {};
    }

    int line_;
    std::string buffer_;
};

/// The line that acknowledges a body.
inline std::string acknowledgement(std::string_view body)
{
    return sentence("PMGNCSM," + sentence(body).substr(body.size() + 2));
}

} // namespace support
