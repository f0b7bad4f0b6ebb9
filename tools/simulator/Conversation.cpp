// SPDX-License-Identifier: MIT
// A command ends the data phase that it interrupts, as on the devices. Order of sending: a fault's
// endless stream, answers, chatter, data.

#include "Conversation.h"

#include "Damage.h"
#include "Receiver.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <utility>

namespace simulator {
namespace {

constexpr std::string_view kVersionSentence = "PMGNVER,017,1.00,SIMULATED RECEIVER";
constexpr std::string_view kCommandPrefix = "PMGNCMD,";
constexpr std::string_view kBaudPrefix = "PMGNCMD,BAUD,";
constexpr std::string_view kAcknowledgementPrefix = "PMGNCSM,";

constexpr std::array<Named<Step>, 8> kCommands{{{"PMGNCMD,VERSION", Step::kVersion},
                                                {"PMGNCMD,HANDON", Step::kHandOn},
                                                {"PMGNCMD,TON", Step::kTransferOn},
                                                {"PMGNCMD,WAYPOINT", Step::kWaypoint},
                                                {"PMGNCMD,TRACK,2", Step::kTrack},
                                                {"PMGNCMD,ROUTE", Step::kRoute},
                                                {"PMGNCMD,TOFF", Step::kTransferOff},
                                                {"PMGNCMD,HANDOFF", Step::kHandOff}}};

bool startsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool isBaud(Step step)
{
    return step == Step::kBaud || step == Step::kBaudBack;
}

// The speed that a BAUD command requests; 0 if the receiver does not have it.
int requestedSpeed(std::string_view body)
{
    const auto number = gps::wholeUnsigned(body.substr(kBaudPrefix.size()));
    const int speed = gps::saturatedInt32(std::int64_t{number.value_or(0)});
    return isLineSpeed(speed) ? speed : 0;
}

Outgoing outgoing(const std::string& body, const Fault* fault, Clock::time_point earliest)
{
    auto bytes = wireForm(body, fault);
    auto text = bytes == wireForm(body) ? body : bytes;
    return {std::move(bytes), std::move(text), earliest};
}

} // namespace

Conversation::Conversation(const Settings& settings, SessionLog& log)
    : settings_(settings), log_(log), speed_(settings.speed), handshake_(settings.handshake)
{
    restart();
}

// Speed and handshaking stay, as in a device whose cable is pulled out and plugged in again.
void Conversation::restart()
{
    understood_ = false;
    closing_ = false;
    timesHappened_.assign(settings_.faults.size(), 0);
    answers_.clear();
    chatter_.reset();
    phase_.reset();
    stream_.reset();
}

void Conversation::setOtherSpeed(int speed, Clock::time_point when)
{
    otherSpeed_ = speed;
    if (chatter_)
        chatter_->due = std::max(chatter_->due, when + chatter_->settling);
}

void Conversation::take(const ArrivedLine& line)
{
    const std::string_view text{line.text};
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(text);
    // On a real line, bytes of another speed are noise. A pseudo-terminal passes them on unchanged.
    if (!body || line.speed != speed_) {
        log_.add(LogKind::kUnreadable, text.substr(0, text.find_last_not_of('\r') + 1), line.speed,
                 line.when);
        return;
    }
    log_.add(LogKind::kReceived, *body, line.speed, line.when);
    understood_ = true;
    if (stream_) // a device that sends without end no longer listens
        return;
    if (!startsWith(*body, kAcknowledgementPrefix))
        command(*body, line.when);
    else if (phase_ && phase_->take(*body, line.when))
        endPhaseIfOver();
}

void Conversation::endPhaseIfOver()
{
    sendsPhase_ = false; // a repeat that is still being sent is not the next sentence
    if (phase_->isOver())
        phase_.reset();
}

std::optional<Step> Conversation::stepOf(std::string_view body) const
{
    if (startsWith(body, kBaudPrefix))
        return closing_ ? Step::kBaudBack : Step::kBaud;
    const auto* const found = std::find_if(kCommands.begin(), kCommands.end(),
                                           [=](const auto& row) { return row.name == body; });
    return found == kCommands.end() ? std::nullopt : std::optional{found->value};
}

void Conversation::command(std::string_view body, Clock::time_point when)
{
    phase_.reset();
    const auto step = stepOf(body);
    if (!step) { // unknown commands are acknowledged, too
        if (handshake_)
            reply({acknowledgementOf(body)}, nullptr, 0, when);
        return;
    }
    const auto* const fault = nextFault(*step);
    if (fault != nullptr && !applyFault(*fault, kVersionSentence, when))
        return;
    const bool delayed = fault != nullptr && fault->kind == FaultKind::kDelay;
    execute(*step, body, fault, delayed ? when + delayOf(*fault) : when);
}

// A fault's number says how often it happens, except for a delay, whose number is its length.
const Fault* Conversation::nextFault(Step step)
{
    for (std::size_t i = 0; i < settings_.faults.size(); ++i) {
        const auto& fault = settings_.faults[i];
        const bool always = !fault.number || fault.kind == FaultKind::kDelay;
        if (fault.step == step && (always || timesHappened_[i] < *fault.number)) {
            ++timesHappened_[i];
            return &fault;
        }
    }
    return nullptr;
}

// Logs a fault, and does whatever is more than damage to one sentence.
// @return  whether the receiver continues as without the fault
bool Conversation::applyFault(const Fault& fault, std::string_view sentence, Clock::time_point when)
{
    log_.add(LogKind::kFault, describe(fault), speed_, when);
    switch (fault.kind) {
    case FaultKind::kEndless:
        stream_ = Outgoing{std::string(256, 'X'), {}, when};
        return false;
    case FaultKind::kFlood:
        stream_ = Outgoing{wireForm(sentence), {}, when};
        return false;
    case FaultKind::kHangUp:
        hungUp_ = true;
        return false;
    case FaultKind::kSilence:
    case FaultKind::kStop:
        return false;
    default:
        return true;
    }
}

void Conversation::execute(Step step, std::string_view body, const Fault* fault,
                           Clock::time_point when)
{
    std::vector<std::string> bodies;
    // A change of speed is always acknowledged: the other side must know when to follow.
    if (handshake_ || isBaud(step))
        bodies.push_back(acknowledgementOf(body));
    const auto start = [&](Step dataStep, const std::vector<std::string>& sentences) {
        phase_.emplace(dataStep, sentences, settings_.faults, when, handshake_);
        sendsPhase_ = false;
    };
    switch (step) {
    case Step::kVersion:
        bodies.emplace_back(kVersionSentence);
        break;
    case Step::kHandOn:
        handshake_ = true;
        break;
    case Step::kHandOff:
        handshake_ = false;
        closing_ = true; // a BAUD after this one takes the speed back, which is a step of its own
        break;
    case Step::kTransferOff:
        closing_ = true;
        break;
    case Step::kWaypoint:
        start(Step::kWaypointData, settings_.sentences.waypoints);
        break;
    case Step::kTrack:
        start(Step::kTrackData, settings_.sentences.tracks);
        break;
    case Step::kRoute:
        start(Step::kRouteData, settings_.sentences.routes);
        break;
    default:
        break;
    }
    reply(std::move(bodies), fault, isBaud(step) ? requestedSpeed(body) : 0, when);
    if (settings_.chatter)
        scheduleChatter(step, body, when);
}

// The fault applies to the first sentence; the new speed takes effect after the last one.
void Conversation::reply(std::vector<std::string> bodies, const Fault* fault, int newSpeed,
                         Clock::time_point when)
{
    if (fault != nullptr && fault->kind == FaultKind::kLostAck && !bodies.empty())
        bodies.erase(bodies.begin());
    if (bodies.empty() && newSpeed != 0)
        setSpeed(newSpeed, when);
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        answers_.push_back(outgoing(bodies[i], i == 0 ? fault : nullptr, when));
        answers_.back().newSpeed = i + 1 == bodies.size() ? newSpeed : 0;
    }
}

void Conversation::scheduleChatter(Step step, std::string_view body, Clock::time_point when)
{
    // A host that changes its speed drops what has arrived meanwhile, so the receiver waits.
    constexpr auto kSettling = std::chrono::milliseconds{100};
    if (!isBaud(step) && step != Step::kTransferOn && step != Step::kTransferOff &&
        step != Step::kHandOff)
        return;
    const auto settling = isBaud(step) ? kSettling : Clock::duration{};
    chatter_ = Chatter{"PMGNMSG," + std::string{body.substr(kCommandPrefix.size())},
                       when + settling, settling};
}

std::optional<Outgoing> Conversation::next(Clock::time_point now)
{
    sendsPhase_ = false;
    if (stream_)
        return stream_;
    if (!answers_.empty()) {
        if (answers_.front().earliest > now)
            return std::nullopt;
        auto first = std::move(answers_.front());
        answers_.pop_front();
        return first;
    }
    if (chatter_ && otherSpeed_ == speed_ && chatter_->due <= now) {
        const auto chatter = *std::exchange(chatter_, std::nullopt);
        return outgoing(chatter.body, nullptr, chatter.due);
    }
    return phase_ && phase_->due() <= now ? nextSentence(now) : std::nullopt;
}

std::optional<Outgoing> Conversation::nextSentence(Clock::time_point now)
{
    const std::string body{phase_->sentence()};
    if (phase_->isExhausted()) { // nobody has acknowledged it
        log_.add(LogKind::kGaveUp, body, speed_, now);
        phase_.reset();
        return std::nullopt;
    }
    const auto* const fault = phase_->fault();
    if (fault != nullptr && !applyFault(*fault, body, now)) {
        phase_.reset();
        return stream_;
    }
    sendsPhase_ = true;
    return outgoing(body, fault, phase_->due());
}

void Conversation::sent(const Outgoing& what, Clock::time_point when)
{
    if (!what.text.empty())
        log_.add(LogKind::kSent, what.text, speed_, when);
    if (what.newSpeed != 0)
        setSpeed(what.newSpeed, when);
    // What arrived while the sentence was being sent may have advanced or ended the phase.
    if (!std::exchange(sendsPhase_, false) || !phase_)
        return;
    phase_->sent(when);
    if (phase_->isOver())
        phase_.reset();
}

Clock::time_point Conversation::due() const noexcept
{
    if (stream_)
        return stream_->earliest;
    if (!answers_.empty())
        return answers_.front().earliest;
    auto due = Clock::time_point::max();
    if (chatter_ && otherSpeed_ == speed_)
        due = chatter_->due;
    return phase_ ? std::min(due, phase_->due()) : due;
}

void Conversation::setSpeed(int speed, Clock::time_point when)
{
    speed_ = speed;
    log_.add(LogKind::kOwnSpeed, {}, speed, when);
    if (chatter_)
        chatter_->due = std::max(chatter_->due, when + chatter_->settling);
}

} // namespace simulator
