// SPDX-License-Identifier: MIT
// The accounts of all operations are joined: a user asked for one download. Scripts depend on the
// keys and words, so a change goes into docs/json.md and its schema, too.

#include "host/cli/DownloadJson.h"

#include "host/base/JsonDocument.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace host {
namespace {

// Indexed by SkipReason; the arrays below by their enumerations likewise.
constexpr std::array<std::string_view, gps::kSkipReasonCount> kReasons{
    "not a sentence", "wrong checksum", "other kind",    "too few fields", "no name",
    "replaced",       "repeated",       "unknown point", "incomplete"};

constexpr std::array<std::string_view, 6> kPhaseEnds{"not reached", "end",     "silence",
                                                     "damage",      "stopped", "failed"};
constexpr std::array<std::string_view, 4> kVoices{"nothing", "noise", "receiver", "nmea"};
constexpr std::array<std::string_view, 3> kOutputStates{"none", "complete", "partial"};

// Throws for an enumerator without a word, instead of reading behind the table.
template <typename Enum, std::size_t count>
Json wordFor(Enum value, const std::array<std::string_view, count>& words)
{
    return words.at(static_cast<std::size_t>(value));
}

Json errorJson(const std::optional<gps::Error>& error)
{
    if (!error)
        return {};
    return {{"domain", error->domain()},
            {"code", error->code()},
            {"description", orNull(error->description())},
            {"suggestion", orNull(error->suggestion())},
            {"path", orNull(error->path())}};
}

Json kindsJson(const std::vector<gps::TransferKind>& kinds)
{
    Json names = Json::array();
    for (const auto kind : kinds)
        names.push_back(kindName(kind));
    return names;
}

Json countsJson(const RecordCounts& counts)
{
    return {{"waypoints", counts.waypoints}, {"geocaches", counts.geocaches},
            {"routes", counts.routes},       {"routePoints", counts.routePoints},
            {"tracks", counts.tracks},       {"trackPoints", counts.trackPoints}};
}

void addLines(Json& object, const gps::LineAccount& lines)
{
    object["seen"] = lines.seen;
    object["accepted"] = lines.accepted;
    Json skipped = Json::object();
    for (std::size_t i = 0; i < gps::kSkipReasonCount; ++i) {
        if (lines.skipped[i] > 0)
            skipped[std::string{kReasons[i]}] = lines.skipped[i];
    }
    object["skipped"] = std::move(skipped);
}

void addDetails(Json& object, const gps::LineAccount& lines)
{
    Json details = Json::array();
    for (const auto& line : lines.details)
        details.push_back({{"number", line.number}, {"reason", wordFor(line.reason, kReasons)}});
    object["lines"] = std::move(details);
}

// Appends what one operation's account has to the arrays of the document.
void addAccount(Json& document, const gps::TransferAccount& account)
{
    // An import of several files has an entry for each kind of each file.
    for (const auto& tally : talliesOf(account)) {
        Json kind{{"kind", tally.kind}};
        addLines(kind, tally.lines);
        document["kinds"].push_back(std::move(kind));
    }
    for (const auto& file : account.files) {
        Json entry{{"kind", file.kind}, {"path", file.path}, {"error", errorJson(file.error)}};
        addLines(entry, file.lines);
        addDetails(entry, file.lines);
        document["files"].push_back(std::move(entry));
    }
    for (const auto& unseen : account.unseen)
        document["unseen"].push_back(
            {{"kind", unseen.kind}, {"path", unseen.path}, {"error", errorJson(unseen.error)}});
    for (const auto& phase : account.phases) {
        Json entry{{"kind", phase.kind}, {"end", wordFor(phase.end, kPhaseEnds)}};
        addLines(entry, phase.lines);
        addDetails(entry, phase.lines);
        document["phases"].push_back(std::move(entry));
    }
    for (const auto& command : account.commands)
        document["commands"].push_back({{"command", command.command},
                                        {"attempts", command.attempts},
                                        {"acknowledged", command.acknowledged}});
    document["omitted"] = document["omitted"].get<std::uint64_t>() + account.omitted;
}

Json missingJson(const DownloadReport& report)
{
    Json names = Json::array();
    for (const auto& operation : report.operations) {
        for (const auto kind : operation.missing) {
            const auto& recovered = operation.recovered;
            const Json name = kindName(kind);
            if (std::find(recovered.begin(), recovered.end(), kind) == recovered.end() &&
                std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
        }
    }
    return names;
}

Json repeatsJson(const DownloadReport& report)
{
    RepeatCounts sum;
    for (const auto& operation : report.operations) {
        sum.waypoints += operation.repeats.waypoints;
        sum.routes += operation.repeats.routes;
        sum.trackPoints += operation.repeats.trackPoints;
    }
    return {{"waypoints", sum.waypoints}, {"routes", sum.routes}, {"trackPoints", sum.trackPoints}};
}

Json messagesJson(const std::vector<Message>& messages)
{
    Json list = Json::array();
    for (const auto& message : messages)
        list.push_back({{"error", message.isError}, {"text", message.text}});
    return list;
}

Json outputJson(const OutputReport& output)
{
    return {{"state", wordFor(output.state, kOutputStates)},
            {"path", output.path.empty() ? Json() : Json(output.path)},
            {"remark", output.remark.empty() ? Json() : Json(output.remark)},
            {"error", errorJson(output.error)}};
}

} // namespace

std::string downloadJson(const DownloadReport& report, const std::vector<Message>& messages,
                         ExitStatus status)
{
    // Later operations read single kinds of the same device again, or import files, which have no
    // device.
    const auto* const first = report.operations.empty() ? nullptr : &report.operations.front();
    const auto location = first != nullptr ? first->location : std::string{};
    Json document{
        {"status", static_cast<int>(status)},
        {"complete", report.isComplete()},
        {"interrupted", report.isInterrupted()},
        {"device", location.empty() ? Json() : Json(location)},
        {"voice", first != nullptr && first->voice ? wordFor(*first->voice, kVoices) : Json()},
        {"requested", first != nullptr ? kindsJson(first->requested) : Json::array()},
        {"missing", missingJson(report)},
        {"output", outputJson(report.output)},
        {"received", countsJson(report.received)},
        {"written", countsJson(report.written)},
        {"repeats", repeatsJson(report)}};
    for (const char* const list : {"kinds", "files", "unseen", "phases", "commands"})
        document[list] = Json::array();
    document["omitted"] = 0;
    for (const auto& operation : report.operations) {
        if (operation.account)
            addAccount(document, *operation.account);
    }
    document["messages"] = messagesJson(messages);
    return document.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace host
