// SPDX-License-Identifier: MIT
// One thread per receiver: it reads the wire, passes lines to the conversation, sends what the
// conversation wants sent, and sleeps until something is due.

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

bool isLineSpeed(int bitsPerSecond) noexcept
{
    return std::any_of(kLineSpeeds.begin(), kLineSpeeds.end(), [=](const LineSpeed& speed) {
        return speed.bitsPerSecond == bitsPerSecond;
    });
}

class Receiver::Service {
    // Wakes a waiting thread to make it stop.
    class StopEvent {
    public:
        StopEvent() : file_(::eventfd(0, EFD_CLOEXEC))
        {
            if (file_ < 0)
                throw std::system_error{errno, std::generic_category(),
                                        "cannot create an event file"};
        }
        ~StopEvent() { ::close(file_); }
        StopEvent(const StopEvent&) = delete;
        StopEvent& operator=(const StopEvent&) = delete;

        void raise() const
        {
            const std::uint64_t one = 1;
            (void)!::write(file_, &one, sizeof one);
        }
        [[nodiscard]] int file() const noexcept { return file_; }

    private:
        int file_;
    };

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
    void send();
    void hangUp();

    const Settings settings_;
    SessionLog log_;
    std::optional<Wire> wire_; // nullopt after hanging up
    const std::string path_;
    Conversation conversation_;
    std::optional<Outgoing> sending_;
    bool wasOpen_ = false;
    bool done_ = false;
    int knownSpeed_ = 0; // the other side's, as last logged
    std::atomic<bool> stopping_ = false;
    const StopEvent stop_;
    std::promise<void> end_;
    const std::shared_future<void> ended_ = end_.get_future().share();
    std::thread thread_; // last, because it uses all the others
};

void Receiver::Service::serve()
{
    // In nanoseconds. The default of 50,000 would be noticeable at 115200 bits per second.
    ::prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL, 0UL);
    while (!stopping_ && !done_) {
        wire_->read();
        watch();
        while (const auto line = wire_->nextLine())
            conversation_.take(*line);
        if (wasOpen_)
            send();
        if (conversation_.hasHungUp())
            hangUp();
        else if (!done_)
            wire_->wait(sending_ ? Clock::time_point::max() : conversation_.due(), stop_.file());
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
    sending_.reset(); // whoever opens the line next must not get the rest of a sentence
    if (!open)
        wire_->clear();
    // Last, because tests wait for this entry and then go on.
    log_.add(open ? LogKind::kOpened : LogKind::kClosed, {}, wire_->otherSpeed());
}

// One sentence at a time: it is only known after a sentence what comes next.
void Receiver::Service::send()
{
    if (!sending_) {
        sending_ = conversation_.next(Clock::now());
        if (!sending_)
            return;
        wire_->send(sending_->bytes, sending_->earliest, conversation_.speed());
    }
    if (const auto left = wire_->write())
        conversation_.sent(*std::exchange(sending_, std::nullopt), *left);
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
