// SPDX-License-Identifier: MIT
// A simulation by events: a line that arrives at the receiver, bytes that leave it, or a message
// that it begins to send. Each step performs the earliest event and sets the clock to its time.

#include "SimulatedLine.h"

#include <tools/simulator/LineSpeeds.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace support {
namespace {

using simulator::Clock;
using simulator::LogKind;

constexpr std::size_t kLongestText = 4096;      // bytes; a port returns only the end of longer text
constexpr std::chrono::seconds kOutputLimit{1}; // for output to be sent before a change of speed
constexpr std::size_t kPiece = 16;              // bytes that a serial chip delivers at once
constexpr std::size_t kMostSteps = 20'000'000;  // of a session; what takes more does not end

} // namespace

int SimulatedLine::openWithDevicePath(const char* /*path*/)
{
    close();
    open_ = true;
    receiver_.conversation.restart();
    receiver_.log.add(LogKind::kOpened, {}, speed_, receiver_.now);
    noteSpeed();
    return 0;
}

void SimulatedLine::close()
{
    if (!std::exchange(open_, false))
        return;
    partial_.clear();
    arriving_.clear();
    sending_.reset();
    received_.clear();
    receiver_.conversation.restart();
    receiver_.log.add(LogKind::kClosed, {}, speed_, receiver_.now);
}

void SimulatedLine::setBaudRate(int bitsPerSecond)
{
    const auto limit = std::min(inFree_, receiver_.now + kOutputLimit);
    while (open_ && receiver_.now < limit && passTime(limit)) {
    }
    if (open_ && hungUp_)
        throw gps::SerialFailure{"a change of the speed of a line that has hung up"};
    received_.clear();
    if (std::exchange(speed_, bitsPerSecond) != bitsPerSecond && open_)
        noteSpeed();
}

void SimulatedLine::noteSpeed()
{
    receiver_.log.add(LogKind::kSpeed, {}, speed_, receiver_.now);
    receiver_.conversation.setOtherSpeed(speed_, receiver_.now);
}

void SimulatedLine::sendString(std::string_view text, gps::StringEncoding /*encoding*/)
{
    inFree_ = std::max(inFree_, receiver_.now);
    for (const char byte : text) {
        inFree_ += byteTime(speed_);
        if (byte == '\n')
            arriving_.push_back({std::exchange(partial_, {}), speed_, inFree_});
        else
            partial_ += byte;
    }
}

std::optional<std::string> SimulatedLine::readStringTo(std::string_view terminator,
                                                       float timeoutSeconds)
{
    const auto deadline = receiver_.now + std::chrono::duration_cast<Clock::duration>(
                                              std::chrono::duration<float>{timeoutSeconds});
    std::size_t searched = 0;
    auto text = takeTextTo(terminator, searched);
    while (!text && !hungUp_ && passTime(deadline))
        text = takeTextTo(terminator, searched);
    if (!text && hungUp_)
        throw gps::SerialFailure{"a read from a line that has hung up"};
    return text;
}

/// Performs the next event, or lets the time pass if there is none until then.
/// @return  whether there was one
bool SimulatedLine::passTime(Time until)
{
    if (++steps_ > kMostSteps) {
        ADD_FAILURE() << "the session does not end";
        throw gps::SerialFailure{"the session does not end"};
    }
    const auto arrival = arriving_.empty() ? Time::max() : arriving_.front().when;
    const auto leaving = departure();
    const auto next = std::max(receiver_.now, std::min(arrival, leaving));
    receiver_.now = std::min(next, until);
    if (hungUp_ || next > until)
        return false;
    if (arrival <= leaving)
        arrive();
    else
        depart();
    hangUpIfDue();
    return true;
}

void SimulatedLine::arrive()
{
    const auto line = std::move(arriving_.front());
    arriving_.pop_front();
    if (line.speed == receiver_.conversation.speed())
        ++understood_;
    receiver_.conversation.take(line);
}

/// When the next piece has left, or the receiver wants to send.
SimulatedLine::Time SimulatedLine::departure() const
{
    if (!sending_)
        return receiver_.conversation.due();
    const auto end = std::min(sent_ + kPiece, sending_->bytes.size());
    return outBegin_ + byteTime(outSpeed_) * static_cast<Clock::rep>(end);
}

void SimulatedLine::depart()
{
    if (!sending_) {
        beginToSend();
        return;
    }
    ++bytesReceived_;
    if (speed_ == outSpeed_) // at another speed it would be noise
        received_.append(sending_->bytes, sent_, kPiece);
    sent_ += kPiece;
    if (sent_ < sending_->bytes.size())
        return;
    outFree_ = receiver_.now;
    receiver_.conversation.sent(*std::exchange(sending_, std::nullopt), outFree_);
}

void SimulatedLine::beginToSend()
{
    sending_ = receiver_.conversation.next(receiver_.now);
    if (!sending_)
        return;
    sent_ = 0;
    outSpeed_ = receiver_.conversation.speed();
    outBegin_ = std::max(sending_->earliest, outFree_);
}

void SimulatedLine::hangUpIfDue()
{
    if (!receiver_.conversation.hasHungUp() && understood_ != receiver_.unpluggedAfter)
        return;
    hungUp_ = true;
    receiver_.log.add(LogKind::kHungUp, {}, receiver_.conversation.speed(), receiver_.now);
}

Clock::duration SimulatedLine::byteTime(int speed) const
{
    return receiver_.settings.paced ? simulator::byteTime(speed) : Clock::duration{};
}

/// @param searched  in, out: how many bytes are known to hold no terminator
std::optional<std::string> SimulatedLine::takeTextTo(std::string_view terminator,
                                                     std::size_t& searched)
{
    const auto end = received_.find(terminator, searched);
    if (end == std::string::npos) {
        searched = received_.size() - std::min(received_.size(), terminator.size() - 1);
        return std::nullopt;
    }
    const auto size = std::min(end, kLongestText);
    auto text = received_.substr(end - size, size);
    received_.erase(0, end + terminator.size());
    return text;
}

} // namespace support
