// SPDX-License-Identifier: MIT
// DataPhase: which data sentence comes next, and when: one kind's sentences and END, each until it
// is acknowledged. Private to this room; one thread.

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
    /// @param start              when the first sentence may come
    /// @param acknowledged       whether each sentence waits for its acknowledgement
    DataPhase(Step step, const std::vector<std::string>& sentences,
              const std::vector<Fault>& faults, Clock::time_point start, bool acknowledged);

    /// When there is a sentence to send; while one is sent that is for the caller to know.
    [[nodiscard]] Clock::time_point due() const noexcept { return due_; }

    /// The body of the sentence to send.
    [[nodiscard]] std::string_view sentence() const;

    /// The fault that happens to it, this time.
    [[nodiscard]] const Fault* fault() const;

    /// Whether it has been sent as often as it is.
    [[nodiscard]] bool isHopeless() const noexcept;

    /// The sentence has been sent.
    void sent(Clock::time_point when);

    /// An acknowledgement has come. @return  whether it was the right one: the next sentence's turn
    /// has come
    bool take(std::string_view acknowledgement, Clock::time_point when);

    /// Whether END is over, too.
    [[nodiscard]] bool isOver() const noexcept { return index_ > sentences_.size(); }

private:
    [[nodiscard]] bool happensNow(const Fault& fault) const noexcept;
    void advance(Clock::time_point when);

    const Step step_;
    const std::vector<std::string>& sentences_;
    const std::vector<Fault>& faults_;
    const bool acknowledged_;
    bool deaf_ = false; // to acknowledgements
    std::size_t index_ = 0;
    int sendings_ = 0; // of this sentence
    Clock::time_point due_;
};

} // namespace simulator
