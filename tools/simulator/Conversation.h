// SPDX-License-Identifier: MIT
// Conversation: what a receiver does about what it hears, and what it says next. Knows nothing of
// the terminal: the receiver's thread hands in what has arrived and takes what is to be sent.
// Private to this room; one thread.

#pragma once

#include "DataPhase.h"
#include "Wire.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

struct Settings;

/// Something to say.
struct Outgoing {
    std::string bytes{};
    std::string text{};           ///< for the log; empty: not logged
    Clock::time_point earliest{}; ///< when it may begin
    int newSpeed = 0;             ///< the receiver's own when it is said; 0: as before
};

class Conversation {
public:
    /// @param settings  outlives the conversation
    Conversation(const Settings& settings, SessionLog& log);

    /// The receiver's own speed.
    [[nodiscard]] int speed() const noexcept { return speed_; }

    /// Whether the port is to disappear.
    [[nodiscard]] bool hasHungUp() const noexcept { return hungUp_; }

    /// Whether a sentence was understood since the line was opened.
    [[nodiscard]] bool hasUnderstood() const noexcept { return understood_; }

    /// The line has been opened: what was going on is over, and faults begin anew.
    void restart();

    /// The other side has this speed now.
    void setOtherSpeed(int speed, Clock::time_point when);

    void take(const ArrivedLine& line);

    /// What to say now, nothing else being on its way. The caller calls sent() once it has left.
    /// @return  none: nothing
    [[nodiscard]] std::optional<Outgoing> next(Clock::time_point now);

    /// What next() answered has left.
    void sent(const Outgoing& what, Clock::time_point when);

    /// When next() may answer something although nothing has arrived.
    [[nodiscard]] Clock::time_point due() const noexcept;

private:
    struct Chatter {
        std::string body;
        Clock::time_point due;
        Clock::duration settling; // how long after the two speeds have become one
    };

    void command(std::string_view body, Clock::time_point when);
    void act(Step step, std::string_view body, const Fault* fault, Clock::time_point when);
    void answer(std::vector<std::string> bodies, const Fault* fault, int newSpeed,
                Clock::time_point when);
    void chatterAfter(Step step, std::string_view body, Clock::time_point when);
    [[nodiscard]] const Fault* takeFault(Step step);
    [[nodiscard]] bool happens(const Fault& fault, std::string_view sentence,
                               Clock::time_point when);
    void phaseAdvanced();
    [[nodiscard]] std::optional<Outgoing> nextSentence(Clock::time_point now);
    [[nodiscard]] std::optional<Step> stepOf(std::string_view body) const;
    void setSpeed(int speed, Clock::time_point when);

    const Settings& settings_;
    SessionLog& log_;
    int speed_;
    int otherSpeed_ = 0;
    bool handshake_;

    // Since the line was opened.
    bool understood_ = false;
    bool closing_ = false; // TOFF or HANDOFF has come
    bool hungUp_ = false;
    std::vector<int> timesHappened_; // of each fault
    std::deque<Outgoing> answers_;
    std::optional<Chatter> chatter_;
    std::optional<DataPhase> phase_;
    bool sendsPhase_ = false;        // what is on its way is the phase's
    std::optional<Outgoing> stream_; // said again and again, whatever comes
};

} // namespace simulator
