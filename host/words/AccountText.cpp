// SPDX-License-Identifier: MIT
// Kinds, commands and reasons are turned into words by small tables. Lists of line numbers are cut
// after kMostNumbers, so that a message stays a line.

#include "host/words/AccountText.h"

#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

using gps::SkipReason;
using Cause = SessionGap::Cause;

constexpr std::size_t kMostNumbers = 10; // line numbers in one message

struct Noun {
    std::string_view kind;
    std::string_view one;
    std::string_view many;
};

// A route takes several lines, and lines are what the account counts.
constexpr std::array<Noun, 4> kNouns{{{"tracks", "track point", "track points"},
                                      {"waypoints", "waypoint", "waypoints"},
                                      {"routes", "route line", "route lines"},
                                      {"geocaches", "geocache", "geocaches"}}};

std::string counted(std::uint64_t count, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", groupedText(count), count == 1 ? one : many);
}

std::string countedOf(const std::string& kind, std::uint64_t count)
{
    const auto* const noun = std::find_if(kNouns.begin(), kNouns.end(),
                                          [&](const Noun& row) { return row.kind == kind; });
    return noun != kNouns.end() ? counted(count, noun->one, noun->many)
                                : counted(count, "line of " + kind, "lines of " + kind);
}

std::string numberList(const DamagedLines& damaged, std::size_t count)
{
    const std::string_view noun = damaged.path.empty() ? "sentence" : "line";
    auto text = damaged.path.empty()
                    ? std::string{}
                    : std::filesystem::path{damaged.path}.filename().string() + ' ';
    text.append(noun).append(count == 1 ? " " : "s ");
    for (std::size_t i = 0; i < count; ++i)
        text.append(i == 0 ? "" : ", ").append(groupedText(damaged.numbers[i]));
    return text;
}

// Where the damage is: "a.log lines 10, 20; b.log line 3, and 7 more".
std::string damageText(const KindTally& tally, std::uint64_t count)
{
    auto text = fmt::format("{} damaged", groupedText(count));
    std::uint64_t shown = 0;
    for (const auto& damaged : tally.damaged) {
        const auto room = kMostNumbers - std::min<std::uint64_t>(shown, kMostNumbers);
        const auto now = std::min<std::size_t>(damaged.numbers.size(), room);
        if (now == 0)
            break;
        text.append(shown == 0 ? ": " : "; ").append(numberList(damaged, now));
        shown += now;
    }
    // The account keeps the numbers of only so many lines, but counts all of them.
    if (shown > 0 && shown < count)
        text += fmt::format(", and {} more", groupedText(count - shown));
    return text;
}

std::string serialTallyText(const KindTally& tally)
{
    const auto damaged = tally.damagedCount();
    if (damaged == 0)
        return {};
    return fmt::format("While {} were read, {} arrived damaged. A receiver sends such a sentence "
                       "again.",
                       tally.kind, counted(damaged, "sentence", "sentences"));
}

// Without the word that all commands begin with: "BAUD,115200".
std::string commandName(const std::string& body)
{
    return body.substr(body.find(',') + 1);
}

std::string phaseText(const SessionGap& gap, std::string_view reason)
{
    const auto arrived = gap.subject == "routes"
                             ? counted(gap.count, "route sentence", "route sentences")
                             : countedOf(gap.subject, gap.count);
    return fmt::format("{} while {} were read; {} arrived. Check the cable and the receiver's "
                       "batteries, and try again.",
                       reason, gap.subject, arrived);
}

std::string commandText(const SessionGap& gap)
{
    const auto name = commandName(gap.subject);
    if (gap.isClosingDown)
        return fmt::format("The receiver did not acknowledge the command {}, so it may still be in "
                           "its transfer mode. Turn it off and on again.",
                           name);
    return fmt::format(
        "The receiver did not acknowledge the command {}, so records may be missing. "
        "Turn it off and on, and try again.",
        name);
}

} // namespace

std::string groupedText(std::uint64_t number)
{
    auto text = std::to_string(number);
    groupDigits(text, text.size());
    return text;
}

std::string tallyText(const KindTally& tally)
{
    if (tally.isSerial)
        return serialTallyText(tally);
    const auto& lines = tally.lines;
    std::vector<std::string> losses;
    if (const auto count = tally.damagedCount(); count > 0)
        losses.push_back(damageText(tally, count));
    const auto add = [&](SkipReason reason, std::string_view words) {
        if (const auto count = lines.skippedFor(reason); count > 0)
            losses.push_back(fmt::format("{} {}", groupedText(count), words));
    };
    add(SkipReason::kNoName, "without a name");
    add(SkipReason::kReplaced, "replaced by a later one of the same name");
    add(SkipReason::kIncomplete, "of routes whose last line is missing");
    if (losses.empty())
        return {};
    // One file can hold several kinds, so lines of another kind are not lost.
    const auto expected =
        lines.seen - std::min(lines.seen, lines.skippedFor(SkipReason::kOtherKind));
    auto text =
        fmt::format("{} of {}", groupedText(lines.accepted), countedOf(tally.kind, expected));
    for (const auto& loss : losses)
        text.append("; ").append(loss);
    return text;
}

std::string gapText(const SessionGap& gap)
{
    switch (gap.cause) {
    case Cause::kNotReached:
        return fmt::format("The session ended before the {} were read.", gap.subject);
    case Cause::kSilence:
        return phaseText(gap, "The receiver stopped sending");
    case Cause::kDamage:
        return phaseText(gap, "Too many sentences were damaged");
    case Cause::kStopped:
        return phaseText(gap, "The session was stopped");
    case Cause::kFailed:
        return phaseText(gap, "The session failed");
    case Cause::kNotAcknowledged:
        return commandText(gap);
    case Cause::kSpeedRefused:
        return fmt::format("The receiver answers, but not at {} bits per second, the speed of "
                           "downloads. Set the baud rate of its data port to 115200 or to "
                           "automatic, turn it off and on, and try again.",
                           gap.subject.substr(gap.subject.rfind(',') + 1));
    case Cause::kUnknownPoints:
        return fmt::format("{} left out of {} routes, because the waypoints did not arrive. Try "
                           "again.",
                           counted(gap.count, "point was", "points were"),
                           gap.count == 1 ? "its" : "their");
    case Cause::kUnfinishedRoutes:
        return fmt::format("{} left out, because the last sentence did not arrive. Try again.",
                           counted(gap.count, "route was", "routes were"));
    case Cause::kRepeatedRoutes:
        return fmt::format("{} of routes arrived twice, so their points may be there twice. Try "
                           "again.",
                           counted(gap.count, "sentence", "sentences"));
    }
    return {};
}

std::string repeatText(const RepeatCounts& repeats)
{
    std::string text;
    const auto add = [&](std::uint64_t count, std::string_view one, std::string_view many) {
        if (count > 0)
            text.append(text.empty() ? "" : ", ").append(counted(count, one, many));
    };
    add(repeats.waypoints, "waypoint", "waypoints");
    add(repeats.routes, "route", "routes");
    add(repeats.trackPoints, "track point", "track points");
    return text.empty() ? text
                        : fmt::format("The receiver sent these twice; the repeats were left out: "
                                      "{}.",
                                      text);
}

std::string voiceText(gps::LineVoice voice, const std::string& location)
{
    switch (voice) {
    case gps::LineVoice::kNmea:
        return fmt::format(
            "The unit at {} sends position sentences (NMEA) instead of answering. In "
            "its setup, switch the NMEA output off, and try again.",
            location);
    case gps::LineVoice::kNoise:
        return fmt::format(
            "What arrives at {} makes no sense at any speed that receivers use. Set "
            "the baud rate of the unit's data port to 4800, check the cable, and try "
            "again.",
            location);
    case gps::LineVoice::kNothing:
    case gps::LineVoice::kReceiver:
        break;
    }
    return fmt::format(
        "No receiver answered at {}. Check that it is on and connected there, and try "
        "again.",
        location);
}

} // namespace host
