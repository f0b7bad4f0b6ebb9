// SPDX-License-Identifier: MIT
// Holds a conversation with the simulated receiver: the first line of an input lists faults, and
// each other line is what the other side does next. "~" is a second of silence, "!9600" a change of
// its speed, "^" the closing of the line; anything else is sent, with the right checksum if it
// begins with "$". The input's sentences are also the receiver's data.

#include "Framing.h"
#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <tools/simulator/Conversation.h>
#include <tools/simulator/Receiver.h>
#include <tools/simulator/Sentences.h>
#include <tools/simulator/SessionLog.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

constexpr std::chrono::seconds kSilence{1};
constexpr int kMostSendings = 64; // within a second: an endless stream is cut off

std::string_view takeUntil(std::string_view& text, char end)
{
    const auto part = text.substr(0, text.find(end));
    text.remove_prefix(std::min(text.size(), part.size() + 1));
    return part;
}

simulator::Settings settingsFrom(std::string_view faults, std::string_view data)
{
    simulator::Settings settings;
    settings.handshake = faults.size() % 2 == 0;
    settings.chatter = faults.size() % 3 == 0;
    while (!faults.empty()) {
        if (const auto fault = simulator::parseFault(takeUntil(faults, ' '))) {
            fuzz::require(simulator::parseFault(simulator::describe(*fault)).has_value(),
                          "a fault can be read as it is described");
            settings.faults.push_back(*fault);
        }
    }
    (void)simulator::loadSentences(fuzz::asFile(fuzz::linesWithChecksums(data)),
                                   settings.sentences);
    return settings;
}

class Talk {
public:
    explicit Talk(const simulator::Settings& settings)
        : settings_(settings), log_(nullptr), conversation_(settings_, log_)
    {
        conversation_.setOtherSpeed(speed_, now_);
    }

    void act(std::string_view action)
    {
        if (action == "~") {
            listen(now_ + kSilence);
        } else if (action == "^") {
            conversation_.restart();
        } else if (action.starts_with('!')) {
            speed_ = gps::leadingInt32(action.substr(1));
            conversation_.setOtherSpeed(speed_, now_);
        } else {
            send(action);
        }
    }

private:
    void send(std::string_view text)
    {
        conversation_.take(
            {text.starts_with('$') ? fuzz::withChecksum(text) : std::string{text}, speed_, now_});
        listen(now_);
    }

    /// Lets the receiver send whatever is due until then.
    void listen(simulator::Clock::time_point until)
    {
        for (int i = 0; i < kMostSendings && conversation_.due() <= until; ++i) {
            now_ = std::max(now_, conversation_.due());
            const auto outgoing = conversation_.next(now_);
            if (!outgoing)
                continue;
            fuzz::require(!outgoing->bytes.empty(), "what is sent has bytes");
            if (settings_.faults.empty())
                fuzz::require(gps::NMEAUtils::checkAndTrimNMEASentence(outgoing->bytes).has_value(),
                              "a receiver without faults sends valid sentences");
            conversation_.sent(*outgoing, now_);
            fuzz::require(simulator::isLineSpeed(conversation_.speed()),
                          "a receiver has a speed that it can be set to");
        }
        now_ = std::max(now_, until);
    }

    const simulator::Settings& settings_;
    simulator::SessionLog log_;
    simulator::Conversation conversation_;
    simulator::Clock::time_point now_ = simulator::Clock::now();
    int speed_ = settings_.speed;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto actions = fuzz::textOf(data, size);
    const auto faults = takeUntil(actions, '\n');
    const auto settings = settingsFrom(faults, actions);
    Talk talk{settings};
    while (!actions.empty())
        talk.act(takeUntil(actions, '\n'));
    return 0;
}
