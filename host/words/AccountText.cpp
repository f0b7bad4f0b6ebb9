// SPDX-License-Identifier: MIT
// Kinds, commands and reasons are turned into words by small tables. Lists of line numbers are cut
// after kMostNumbers, so that a message stays a line.

#include "host/words/AccountText.h"

#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

using gps::SkipReason;
using Cause = SessionGap::Cause;

constexpr std::size_t kMostNumbers = 10; // line numbers in one message

// A route takes several lines, and lines are what the account counts.
std::string countedOf(const std::string& kind, std::uint64_t count)
{
    const auto number = groupedText(count);
    if (kind == "tracks")
        return countText("track point", count, number);
    if (kind == "waypoints")
        return countText("waypoint", count, number);
    if (kind == "routes")
        return countText("route line", count, number);
    if (kind == "geocaches")
        return countText("geocache", count, number);
    return trCounted(count, "{} line of {}", "{} lines of {}", number, kind);
}

std::string numberList(const DamagedLines& damaged, std::size_t count)
{
    std::vector<std::string> numbers;
    for (std::size_t i = 0; i < count; ++i)
        numbers.push_back(groupedText(damaged.numbers[i]));
    const auto list = joined(numbers, ", ");
    if (damaged.path.empty())
        return trCounted(count, "sentence {}", "sentences {}", list);
    return trCounted(count, "{} line {}", "{} lines {}",
                     std::filesystem::path{damaged.path}.filename().string(), list);
}

// Where the damage is: "a.log lines 10, 20; b.log line 3, and 7 more".
std::string damageText(const KindTally& tally, std::uint64_t count)
{
    auto text = trFormat("{} damaged", groupedText(count));
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
        text = trFormat("{}, and {} more", text, groupedText(count - shown));
    return text;
}

std::string serialTallyText(const KindTally& tally)
{
    const auto damaged = tally.damagedCount();
    if (damaged == 0)
        return {};
    return trCounted(
        damaged,
        "While {} were read, {} sentence arrived damaged. A receiver sends such a sentence again.",
        "While {} were read, {} sentences arrived damaged. A receiver sends such a sentence again.",
        termText(tally.kind), groupedText(damaged));
}

// Without the word that all commands begin with: "BAUD,115200".
std::string commandName(const std::string& body)
{
    return body.substr(body.find(',') + 1);
}

std::string phaseText(const SessionGap& gap, std::string_view reason)
{
    const auto arrived = gap.subject == "routes"
                             ? trCounted(gap.count, "{} route sentence", "{} route sentences",
                                         groupedText(gap.count))
                             : countedOf(gap.subject, gap.count);
    return trFormat("{} while {} were read; {} arrived. Check the cable and the receiver's "
                    "batteries, and try again.",
                    reason, termText(gap.subject), arrived);
}

std::string commandText(const SessionGap& gap)
{
    const auto name = commandName(gap.subject);
    if (gap.isClosingDown)
        return trFormat("The receiver did not acknowledge the command {}, so it may still be in "
                        "its transfer mode. Turn it off and on again.",
                        name);
    return trFormat("The receiver did not acknowledge the command {}, so records may be missing. "
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
    if (const auto count = lines.skippedFor(SkipReason::kNoName); count > 0)
        losses.push_back(trFormat("{} without a name", groupedText(count)));
    if (const auto count = lines.skippedFor(SkipReason::kReplaced); count > 0)
        losses.push_back(
            trFormat("{} replaced by a later one of the same name", groupedText(count)));
    if (const auto count = lines.skippedFor(SkipReason::kIncomplete); count > 0)
        losses.push_back(trFormat("{} of routes whose last line is missing", groupedText(count)));
    if (losses.empty())
        return {};
    // One file can hold several kinds, so lines of another kind are not lost.
    const auto expected =
        lines.seen - std::min(lines.seen, lines.skippedFor(SkipReason::kOtherKind));
    auto text = trFormat("{} of {}", groupedText(lines.accepted), countedOf(tally.kind, expected));
    for (const auto& loss : losses)
        text.append("; ").append(loss);
    return text;
}

std::string gapText(const SessionGap& gap)
{
    switch (gap.cause) {
    case Cause::kNotReached:
        return trFormat("The session ended before the {} were read.", termText(gap.subject));
    case Cause::kSilence:
        return phaseText(gap, tr("The receiver stopped sending"));
    case Cause::kDamage:
        return phaseText(gap, tr("Too many sentences were damaged"));
    case Cause::kStopped:
        return phaseText(gap, tr("The session was stopped"));
    case Cause::kFailed:
        return phaseText(gap, tr("The session failed"));
    case Cause::kNotAcknowledged:
        return commandText(gap);
    case Cause::kSpeedRefused:
        return trFormat("The receiver answers, but not at {} bits per second, the speed of "
                        "downloads. Set the baud rate of its data port to 115200 or to "
                        "automatic, turn it off and on, and try again.",
                        gap.subject.substr(gap.subject.rfind(',') + 1));
    case Cause::kUnknownPoints:
        return trCounted(gap.count,
                         "{} point was left out of its routes, because the waypoints did not "
                         "arrive. Try again.",
                         "{} points were left out of their routes, because the waypoints did not "
                         "arrive. Try again.",
                         groupedText(gap.count));
    case Cause::kUnfinishedRoutes:
        return trCounted(
            gap.count,
            "{} route was left out, because the last sentence did not arrive. Try again.",
            "{} routes were left out, because the last sentence did not arrive. Try again.",
            groupedText(gap.count));
    case Cause::kRepeatedRoutes:
        return trCounted(
            gap.count,
            "{} sentence of routes arrived twice, so their points may be there twice. "
            "Try again.",
            "{} sentences of routes arrived twice, so their points may be there twice. "
            "Try again.",
            groupedText(gap.count));
    }
    return {};
}

std::string repeatText(const RepeatCounts& repeats)
{
    std::vector<std::string> parts;
    const auto add = [&parts](std::uint64_t count, std::string_view noun) {
        if (count > 0)
            parts.push_back(countText(noun, count, groupedText(count)));
    };
    add(repeats.waypoints, "waypoint");
    add(repeats.routes, "route");
    add(repeats.trackPoints, "track point");
    return parts.empty() ? std::string{}
                         : trFormat("The receiver sent these twice; the repeats were left out: {}.",
                                    joined(parts, ", "));
}

std::string voiceText(gps::LineVoice voice, const std::string& location)
{
    switch (voice) {
    case gps::LineVoice::kNmea:
        return trFormat("The unit at {} sends position sentences (NMEA) instead of answering. In "
                        "its setup, switch the NMEA output off, and try again.",
                        location);
    case gps::LineVoice::kNoise:
        return trFormat("What arrives at {} makes no sense at any speed that receivers use. Set "
                        "the baud rate of the unit's data port to 4800, check the cable, and try "
                        "again.",
                        location);
    case gps::LineVoice::kNothing:
    case gps::LineVoice::kReceiver:
        break;
    }
    return trFormat("No receiver answered at {}. Check that it is on and connected there, and try "
                    "again.",
                    location);
}

} // namespace host
