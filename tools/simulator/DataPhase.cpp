// SPDX-License-Identifier: MIT
// Faults of a data step happen at one sentence, counted from 1, or at all of them.

#include "DataPhase.h"

#include "Damage.h"

#include <algorithm>
#include <chrono>

namespace simulator {
namespace {

constexpr auto kAcknowledgementTimeout = std::chrono::milliseconds{1500};
constexpr int kMostTimesSent = 5;

} // namespace

DataPhase::DataPhase(Step step, const std::vector<std::string>& sentences,
                     const std::vector<Fault>& faults, Clock::time_point start, bool acknowledged)
    : step_(step), sentences_(sentences), faults_(faults), acknowledged_(acknowledged), due_(start)
{
    for (const auto& fault : faults_) {
        if (fault.step == step_ && fault.kind == FaultKind::kDelay)
            due_ += delayOf(fault);
        ignoresAcknowledgements_ =
            ignoresAcknowledgements_ || (fault.step == step_ && fault.kind == FaultKind::kLostAck);
    }
}

std::string_view DataPhase::sentence() const
{
    return index_ < sentences_.size() ? std::string_view{sentences_[index_]} : "PMGNCMD,END";
}

const Fault* DataPhase::fault() const
{
    const auto found = std::find_if(faults_.begin(), faults_.end(),
                                    [&](const Fault& fault) { return happensNow(fault); });
    return found == faults_.end() ? nullptr : &*found;
}

bool DataPhase::happensNow(const Fault& fault) const noexcept
{
    if (fault.step != step_)
        return false;
    const auto number = static_cast<std::size_t>(std::max(fault.number.value_or(1), 0));
    switch (fault.kind) {
    case FaultKind::kSilence:
    case FaultKind::kDelay:
    case FaultKind::kLostAck:
        return index_ == 0 && timesSent_ == 0;
    case FaultKind::kStop:
        return index_ == number;
    default:
        return number == 0 || (index_ + 1 == number && timesSent_ == 0);
    }
}

bool DataPhase::isExhausted() const noexcept
{
    return timesSent_ == kMostTimesSent;
}

void DataPhase::sent(Clock::time_point when)
{
    ++timesSent_;
    due_ = when + kAcknowledgementTimeout;
    if (!acknowledged_)
        advance(when);
}

bool DataPhase::take(std::string_view acknowledgement, Clock::time_point when)
{
    // Before the sentence has been sent, this is a late acknowledgement of the one before.
    if (timesSent_ == 0 || ignoresAcknowledgements_ ||
        acknowledgement != acknowledgementOf(sentence()))
        return false;
    advance(when);
    return true;
}

void DataPhase::advance(Clock::time_point when)
{
    ++index_;
    timesSent_ = 0;
    due_ = when;
}

} // namespace simulator
