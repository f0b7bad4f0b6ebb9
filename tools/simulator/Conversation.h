// SPDX-License-Identifier: MIT
// Conversation: the receiver's side of the protocol. Gets the lines that arrived and returns the
// lines to send, without knowing about terminals. Used by Receiver, and by tests with a line in
// memory. One thread at a time.

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

/// Bytes to send.
struct Outgoing {
    std::string bytes{};
    std::string text{};           ///< for the log; not logged if empty
    Clock::time_point earliest{}; ///< when sending may begin
    int newSpeed = 0;             ///< the receiver's own speed once it is sent; 0: unchanged
};

class Conversation {
public:
    /// @param settings  outlives the conversation
    Conversation(const Settings& settings, SessionLog& log);

    /// The receiver's own speed.
    [[nodiscard]] int speed() const noexcept { return speed_; }

    /// Whether a fault requires the port to be removed.
    [[nodiscard]] bool hasHungUp() const noexcept { return hungUp_; }

    /// Whether a valid sentence has arrived since the line was opened.
    [[nodiscard]] bool hasUnderstood() const noexcept { return understood_; }

    /// Forgets the session, because the line has been opened or closed. Faults start over.
    void restart();

    /// Notes that the other side has changed its speed.
    void setOtherSpeed(int speed, Clock::time_point when);

    void take(const ArrivedLine& line);

    /// What to send now; nullopt if nothing is due. The caller sends it, calls sent(), and asks
    /// again only then.
    [[nodiscard]] std::optional<Outgoing> next(Clock::time_point now);

    /// Notes that the last byte of what next() returned was sent at `when`.
    void sent(const Outgoing& what, Clock::time_point when);

    /// When next() has something to send even if nothing arrives before.
    [[nodiscard]] Clock::time_point due() const noexcept;

private:
    struct Chatter {
        std::string body;
        Clock::time_point due;
        Clock::duration settling; // the pause after both sides have the same speed
    };

    void command(std::string_view body, Clock::time_point when);
    void execute(Step step, std::string_view body, const Fault* fault, Clock::time_point when);
    void reply(std::vector<std::string> bodies, const Fault* fault, int newSpeed,
               Clock::time_point when);
    void scheduleChatter(Step step, std::string_view body, Clock::time_point when);
    [[nodiscard]] const Fault* nextFault(Step step);
    [[nodiscard]] bool applyFault(const Fault& fault, std::string_view sentence,
                                  Clock::time_point when);
    void endPhaseIfOver();
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
    bool closing_ = false; // TOFF or HANDOFF has arrived
    bool hungUp_ = false;
    std::vector<int> timesHappened_; // per fault
    std::deque<Outgoing> answers_;
    std::optional<Chatter> chatter_;
    std::optional<DataPhase> phase_;
    bool sendsPhase_ = false;        // what is being sent belongs to the phase
    std::optional<Outgoing> stream_; // sent again and again, whatever arrives
};

} // namespace simulator
