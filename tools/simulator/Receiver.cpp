// SPDX-License-Identifier: MIT

#include "Receiver.h"

#include "Conversation.h"
#include "LineSpeeds.h"
#include "Wire.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <future>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace simulator {
namespace {

// What a thread waits for to be told to stop.
class StopSign {
public:
    StopSign() : file_(::eventfd(0, EFD_CLOEXEC))
    {
        if (file_ < 0)
            throw std::system_error{errno, std::generic_category(), "cannot make an event file"};
    }
    ~StopSign() { ::close(file_); }
    StopSign(const StopSign&) = delete;
    StopSign& operator=(const StopSign&) = delete;

    void raise() const
    {
        const std::uint64_t one = 1;
        (void)!::write(file_, &one, sizeof one);
    }
    [[nodiscard]] int file() const noexcept { return file_; }

private:
    int file_;
};

} // namespace

bool isLineSpeed(int bitsPerSecond) noexcept
{
    return std::any_of(kLineSpeeds.begin(), kLineSpeeds.end(), [=](const LineSpeed& speed) {
        return speed.bitsPerSecond == bitsPerSecond;
    });
}

class Receiver::Service {
public:
    explicit Service(Settings settings)
        : settings_(std::move(settings)), log_(settings_.log),
          wire_(std::in_place, settings_.paced), path_(wire_->path()),
          conversation_(settings_, log_), thread_([this] { serve(); })
    {}
    ~Service()
    {
        stopping_ = true;
        stop_.raise();
        thread_.join();
    }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] const SessionLog& log() const noexcept { return log_; }
    [[nodiscard]] bool waitUntilEnded(std::chrono::milliseconds limit) const
    {
        return ended_.wait_for(limit) == std::future_status::ready;
    }

private:
    void serve();
    void watch();
    void lineChanged(bool open);
    void speak();
    void hangUp();

    const Settings settings_;
    SessionLog log_;
    std::optional<Wire> wire_; // none: hung up
    const std::string path_;
    Conversation conversation_;
    std::optional<Outgoing> saying_;
    bool wasOpen_ = false;
    bool done_ = false;
    int knownSpeed_ = 0; // the other side's, as logged
    std::atomic<bool> stopping_ = false;
    const StopSign stop_;
    std::promise<void> end_;
    const std::shared_future<void> ended_ = end_.get_future().share();
    std::thread thread_; // last: it uses all the others
};

void Receiver::Service::serve()
{
    ::prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL,
            0UL); // nanoseconds; the usual 50,000 would show at 115200 bits per second
    while (!stopping_ && !done_) {
        wire_->read();
        watch();
        while (const auto line = wire_->nextLine())
            conversation_.take(*line);
        if (wasOpen_)
            speak();
        if (conversation_.hasHungUp())
            hangUp();
        else if (!done_)
            wire_->wait(saying_ ? Clock::time_point::max() : conversation_.due(), stop_.file());
    }
    end_.set_value();
}

void Receiver::Service::watch()
{
    if (wire_->isOpen() != wasOpen_)
        lineChanged(!wasOpen_);
    if (!wasOpen_ || wire_->otherSpeed() == knownSpeed_)
        return;
    knownSpeed_ = wire_->otherSpeed();
    log_.add(LogKind::kSpeed, {}, knownSpeed_);
    conversation_.setOtherSpeed(knownSpeed_, Clock::now());
}

void Receiver::Service::lineChanged(bool open)
{
    wasOpen_ = open;
    done_ = !open && settings_.once && conversation_.hasUnderstood();
    conversation_.restart();
    saying_.reset();
    if (!open)
        wire_->clear();
    log_.add(open ? LogKind::kOpened : LogKind::kClosed, {},
             wire_->otherSpeed()); // last: whoever waits for it may go on
}

void Receiver::Service::speak()
{
    if (!saying_) {
        saying_ = conversation_.next(Clock::now());
        if (!saying_)
            return;
        wire_->send(saying_->bytes, saying_->earliest, conversation_.speed());
    }
    if (const auto left = wire_->write())
        conversation_.sent(*std::exchange(saying_, std::nullopt), *left);
}

void Receiver::Service::hangUp()
{
    log_.add(LogKind::kHungUp, {}, conversation_.speed());
    wire_.reset();
    done_ = true;
}

Receiver::Receiver(Settings settings) : service_(std::make_unique<Service>(std::move(settings))) {}

Receiver::~Receiver() = default;

const std::string& Receiver::path() const noexcept
{
    return service_->path();
}

std::vector<LogEntry> Receiver::log() const
{
    return service_->log().entries();
}

bool Receiver::waitFor(const std::function<bool(const LogEntry&)>& matches,
                       std::chrono::milliseconds limit) const
{
    return service_->log().waitFor(matches, limit);
}

bool Receiver::waitUntilEnded(std::chrono::milliseconds limit) const
{
    return service_->waitUntilEnded(limit);
}

} // namespace simulator
