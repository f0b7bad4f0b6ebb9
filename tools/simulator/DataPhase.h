// SPDX-License-Identifier: MIT
// DataPhase: sends one kind's sentences and then END, each until it is acknowledged. Decides which
// sentence is next and when. Used by Conversation only. One thread at a time.

#pragma once

#include "Fault.h"
#include "SessionLog.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

class DataPhase {
public:
    /// @param sentences, faults  outlive the phase
    /// @param start              when the first sentence may be sent
    /// @param acknowledged       whether each sentence waits for its acknowledgement
    DataPhase(Step step, const std::vector<std::string>& sentences,
              const std::vector<Fault>& faults, Clock::time_point start, bool acknowledged);

    /// When the next sentence may be sent. Meaningless while one is being sent.
    [[nodiscard]] Clock::time_point due() const noexcept { return due_; }

    /// The body of the sentence to send.
    [[nodiscard]] std::string_view sentence() const;

    /// The fault that affects it this time; null without one.
    [[nodiscard]] const Fault* fault() const;

    /// Whether the sentence has been sent five times without acknowledgement.
    [[nodiscard]] bool isExhausted() const noexcept;

    /// Notes that the sentence was sent.
    void sent(Clock::time_point when);

    /// Handles an acknowledgement.
    /// @return  whether it was the expected one, so that the next sentence follows
    bool take(std::string_view acknowledgement, Clock::time_point when);

    /// Whether END has been acknowledged, too.
    [[nodiscard]] bool isOver() const noexcept { return index_ > sentences_.size(); }

private:
    [[nodiscard]] bool happensNow(const Fault& fault) const noexcept;
    void advance(Clock::time_point when);

    const Step step_;
    const std::vector<std::string>& sentences_;
    const std::vector<Fault>& faults_;
    const bool acknowledged_;
    bool ignoresAcknowledgements_ = false;
    std::size_t index_ = 0;
    int timesSent_ = 0; // this sentence
    Clock::time_point due_;
};

} // namespace simulator
