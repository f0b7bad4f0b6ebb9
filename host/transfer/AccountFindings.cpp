// SPDX-License-Identifier: MIT
// Damage on the way is not counted as a gap if the phase ended with END: a receiver sends a
// sentence again until it is acknowledged, and only intact ones are.

#include "host/transfer/AccountFindings.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {
namespace {

using gps::SkipReason;
using Cause = SessionGap::Cause;

bool isDamage(SkipReason reason) noexcept
{
    return reason == SkipReason::kNotASentence || reason == SkipReason::kWrongChecksum ||
           reason == SkipReason::kTooFewFields;
}

KindTally& tallyFor(std::vector<KindTally>& tallies, const std::string& kind, bool isSerial)
{
    const auto found = std::find_if(tallies.begin(), tallies.end(), [&](const KindTally& tally) {
        return tally.kind == kind && tally.isSerial == isSerial;
    });
    return found != tallies.end()
               ? *found
               : tallies.emplace_back(KindTally{.kind = kind, .isSerial = isSerial});
}

void addDamage(KindTally& tally, const std::string& path, const gps::LineAccount& lines)
{
    DamagedLines damaged{.path = path};
    for (const auto& line : lines.details) {
        if (isDamage(line.reason))
            damaged.numbers.push_back(line.number);
    }
    if (!damaged.numbers.empty())
        tally.damaged.push_back(std::move(damaged));
}

Cause causeOfEnd(gps::PhaseEnd end) noexcept
{
    switch (end) {
    case gps::PhaseEnd::kSilence:
        return Cause::kSilence;
    case gps::PhaseEnd::kDamage:
        return Cause::kDamage;
    case gps::PhaseEnd::kStopped:
        return Cause::kStopped;
    case gps::PhaseEnd::kFailed:
        return Cause::kFailed;
    case gps::PhaseEnd::kNotReached:
    case gps::PhaseEnd::kEnd:
        break;
    }
    return Cause::kNotReached;
}

void addUnacknowledged(std::vector<SessionGap>& gaps,
                       const std::vector<gps::CommandAccount>& commands)
{
    using Purpose = gps::CommandPurpose;
    for (const auto& command : commands) {
        if (command.acknowledged)
            continue;
        const bool isSpeedUp = command.purpose == Purpose::kSpeedUp;
        gaps.push_back({.cause = isSpeedUp ? Cause::kSpeedRefused : Cause::kNotAcknowledged,
                        .subject = command.command,
                        .isClosingDown = command.purpose == Purpose::kRestore});
    }
}

void addRouteGaps(std::vector<SessionGap>& gaps, const gps::LineAccount& lines,
                  std::uint64_t repeatedRoutes)
{
    const auto add = [&](Cause cause, std::uint64_t count) {
        if (count > 0)
            gaps.push_back({.cause = cause, .subject = "routes", .count = count});
    };
    // A repeat that the host dropped with its whole route did no harm.
    const auto repeats = lines.skippedFor(SkipReason::kRepeated);
    add(Cause::kUnknownPoints, lines.skippedFor(SkipReason::kUnknownPoint));
    add(Cause::kUnfinishedRoutes, lines.skippedFor(SkipReason::kIncomplete));
    add(Cause::kRepeatedRoutes, repeats - std::min(repeats, repeatedRoutes));
}

// A folder among the tracks or the routes ends nothing: the driver goes on behind it. Among the
// other kinds it ends the reading like a damaged file.
bool isHarmlessFolder(const gps::FileAccount& file)
{
    std::error_code ignored;
    return (file.kind == "tracks" || file.kind == "routes") &&
           std::filesystem::is_directory(file.path, ignored);
}

gps::Error withPath(const gps::Error& error, const std::string& path)
{
    auto info = error.userInfo();
    info.set(gps::kErrorPathKey, path);
    return {error.domain(), error.code(), std::move(info)};
}

} // namespace

std::uint64_t KindTally::damagedCount() const noexcept
{
    return lines.skippedFor(SkipReason::kNotASentence) +
           lines.skippedFor(SkipReason::kWrongChecksum) +
           lines.skippedFor(SkipReason::kTooFewFields);
}

std::vector<KindTally> talliesOf(const gps::TransferAccount& account)
{
    std::vector<KindTally> tallies;
    // Counts come from the totals, which include files that the account had no room for.
    for (const auto& total : account.totals)
        tallyFor(tallies, total.kind, false).lines.addCounts(total.lines);
    for (const auto& file : account.files)
        addDamage(tallyFor(tallies, file.kind, false), file.path, file.lines);
    for (const auto& phase : account.phases) {
        auto& tally = tallyFor(tallies, phase.kind, true);
        tally.lines.addCounts(phase.lines);
        addDamage(tally, {}, phase.lines);
    }
    return tallies;
}

std::vector<SessionGap> gapsIn(const gps::TransferAccount& account, std::uint64_t repeatedRoutes)
{
    std::vector<SessionGap> gaps;
    addUnacknowledged(gaps, account.commands);
    for (const auto& phase : account.phases) {
        if (phase.end != gps::PhaseEnd::kEnd)
            gaps.push_back({.cause = causeOfEnd(phase.end),
                            .subject = phase.kind,
                            .count = phase.lines.accepted});
        if (phase.kind == "routes")
            addRouteGaps(gaps, phase.lines, repeatedRoutes);
    }
    std::stable_partition(gaps.begin(), gaps.end(),
                          [](const SessionGap& gap) { return !gap.isClosingDown; });
    return gaps;
}

gps::Error causeOf(const gps::Error& error)
{
    const auto* const cause = error.userInfo().findDictionary(gps::kErrorUnderlyingKey);
    const auto* const details = cause != nullptr ? cause->findDictionary("userInfo") : nullptr;
    const auto* const words =
        details != nullptr ? details->findString(gps::kErrorDescriptionKey) : nullptr;
    const auto& source = words != nullptr ? *details : error.userInfo();
    const auto* const reason = source.findString(gps::kErrorReasonKey);
    if (words == nullptr && reason == nullptr)
        return error;
    auto text = source.findString(gps::kErrorDescriptionKey) != nullptr
                    ? *source.findString(gps::kErrorDescriptionKey)
                    : std::string{};
    if (reason != nullptr)
        text.append(text.empty() ? "" : " ").append("(").append(*reason).append(")");
    gps::Dictionary info{{gps::kErrorDescriptionKey, text}};
    if (const auto path = error.path())
        info.set(gps::kErrorPathKey, *path);
    return {error.domain(), error.code(), std::move(info)};
}

std::vector<gps::Error> unreadablePaths(const gps::TransferAccount& account)
{
    std::vector<gps::Error> errors;
    for (const auto& unseen : account.unseen)
        errors.push_back(causeOf(withPath(unseen.error, unseen.path)));
    for (const auto& file : account.files) {
        if (file.error && !isHarmlessFolder(file))
            errors.push_back(causeOf(withPath(*file.error, file.path)));
    }
    return errors;
}

} // namespace host
