// SPDX-License-Identifier: MIT
// Wire: the simulated receiver's end of a pseudo-terminal, as slow as a serial line. The kernel
// hands bytes over at once, whatever the speed: what is read here counts as arrived, and what is
// sent is handed over, when its last byte would be over a line of that speed. Times are planned one
// from another, not from when this thread wakes, so that its own delays do not add up. Private to
// this room; one thread.

#pragma once

#include "SessionLog.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

struct ArrivedLine {
    std::string text{};       ///< without its line feed
    int speed = 0;            ///< the other side's
    Clock::time_point when{}; ///< its last byte's
};

class Wire {
public:
    /// @throws std::system_error  there is no pseudo-terminal to be had
    explicit Wire(bool paced);
    ~Wire();
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    /// Takes in what the other side has written and notes its speed.
    void read();

    /// Whether the other side has the line open, as of the last read, or lines from it are still to
    /// arrive.
    [[nodiscard]] bool isOpen() const noexcept { return open_ || !arriving_.empty(); }

    /// The other side's speed, as of the last read.
    [[nodiscard]] int otherSpeed() const noexcept { return otherSpeed_; }

    /// The next line that has arrived by now.
    [[nodiscard]] std::optional<ArrivedLine> nextLine();

    /// Begins to send. Nothing else may be on its way.
    /// @param earliest  when the first byte may leave; later, if the line was still busy then
    /// @param speed     the other side gets only what is sent at its own
    void send(std::string bytes, Clock::time_point earliest, int speed);

    /// Hands over what is due. @return  when the last byte left, once it has
    [[nodiscard]] std::optional<Clock::time_point> write();

    /// Forgets what is on its way in either direction: the line has been closed.
    void clear();

    /// Waits until the other side does something, the wire has something to do, `stop` is readable,
    /// or the time has come.
    void wait(Clock::time_point until, int stop) const;

private:
    void takeIn(std::string_view bytes);
    [[nodiscard]] bool isHeard() const noexcept { return open_ && otherSpeed_ == outSpeed_; }
    [[nodiscard]] std::size_t bytesDue() const noexcept;
    [[nodiscard]] Clock::time_point due() const noexcept;

    const bool paced_;
    int master_ = -1;
    std::string path_;
    bool open_ = false;
    int otherSpeed_ = 0;

    std::string partial_; // a line whose end has not been written yet
    std::deque<ArrivedLine> arriving_;
    Clock::time_point inFree_{}; // when the last byte written to us will have arrived

    bool sending_ = false;
    bool full_ = false; // the other side does not read: its queue takes no more
    std::string out_;
    std::size_t written_ = 0;
    int outSpeed_ = 0;
    Clock::time_point outBegin_{};
    Clock::duration outByteTime_{};
    Clock::time_point outFree_{}; // when the last byte sent had left
};

} // namespace simulator
