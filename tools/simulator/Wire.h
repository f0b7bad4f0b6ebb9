// SPDX-License-Identifier: MIT
// Wire: the simulated receiver's end of a pseudo-terminal, made as slow as a serial line. The
// kernel passes bytes on at once, so this class delays both what it reads and what it sends until a
// line of that speed would have carried it. Each time is computed from the one before, not from the
// moment the thread wakes, so that delays do not add up. Used by Receiver only. One thread at a
// time.

#pragma once

#include "SessionLog.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

struct ArrivedLine {
    std::string text{};       ///< without its line feed
    int speed = 0;            ///< the sender's
    Clock::time_point when{}; ///< when its last byte arrived
};

class Wire {
public:
    /// @throws std::system_error  if no pseudo-terminal can be opened
    explicit Wire(bool paced);
    ~Wire();
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    /// Reads what the other side has written, and notes its speed.
    void read();

    /// Whether the other side had the line open at the last read, or lines from it are still on
    /// their way.
    [[nodiscard]] bool isOpen() const noexcept { return open_ || !arriving_.empty(); }

    /// The other side's speed at the last read.
    [[nodiscard]] int otherSpeed() const noexcept { return otherSpeed_; }

    /// The next line that has arrived by now; nullopt if there is none.
    [[nodiscard]] std::optional<ArrivedLine> nextLine();

    /// Starts to send. Precondition: nothing else is being sent.
    /// @param earliest  when the first byte may be sent. It is sent later if the line is still busy
    /// @param speed     the other side receives nothing unless it has the same speed
    void send(std::string bytes, Clock::time_point earliest, int speed);

    /// Passes on what is due. @return  when the last byte was sent; nullopt before that
    [[nodiscard]] std::optional<Clock::time_point> write();

    /// Drops what is on its way in either direction, because the line has been closed.
    void clear();

    /// Waits until the other side acts, the wire has something to do, `stop` is readable, or the
    /// time is reached.
    void wait(Clock::time_point until, int stop) const;

private:
    void schedule(std::string_view bytes);
    [[nodiscard]] bool isHeard() const noexcept { return open_ && otherSpeed_ == outSpeed_; }
    [[nodiscard]] std::size_t bytesDue() const noexcept;
    [[nodiscard]] Clock::time_point due() const noexcept;

    const bool paced_;
    int master_ = -1;
    std::string path_;
    bool open_ = false;
    int otherSpeed_ = 0;

    std::string partial_; // a line without its end so far
    std::deque<ArrivedLine> arriving_;
    Clock::time_point inFree_{}; // when the last byte written to us will have arrived

    bool sending_ = false;
    bool full_ = false; // the kernel's queue is full because the other side does not read
    std::string out_;
    std::size_t written_ = 0;
    int outSpeed_ = 0;
    Clock::time_point outBegin_{};
    Clock::duration outByteTime_{};
    Clock::time_point outFree_{}; // when the last byte sent had left
};

} // namespace simulator
