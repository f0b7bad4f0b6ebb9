// SPDX-License-Identifier: MIT
// Scripts depend on the keys and words, so a change goes into docs/json.md and the schemas, too.

#include "host/cli/ReportJson.h"

#include "host/operations/Operation.h"
#include "host/transfer/AccountFindings.h"

#include <cstdint>
#include <utility>

namespace host {
namespace {

// Indexed by SkipReason; the array below by its enumeration likewise.
constexpr std::array<std::string_view, gps::kSkipReasonCount> kReasons{
    "not a sentence", "wrong checksum", "other kind",    "too few fields", "no name",
    "replaced",       "repeated",       "unknown point", "incomplete"};

constexpr std::array<std::string_view, 6> kPhaseEnds{"not reached", "end",     "silence",
                                                     "damage",      "stopped", "failed"};

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

} // namespace

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

Json messagesJson(const std::vector<Message>& messages)
{
    Json list = Json::array();
    for (const auto& message : messages)
        list.push_back({{"error", message.isError}, {"text", message.text}});
    return list;
}

void addAccountLists(Json& object)
{
    for (const char* const list : {"kinds", "files", "unseen", "phases", "commands"})
        object[list] = Json::array();
    object["omitted"] = 0;
}

void addAccount(Json& object, const gps::TransferAccount& account)
{
    // An import of several files has an entry for each kind of each file.
    for (const auto& tally : talliesOf(account)) {
        if (tally.kind.empty()) // a file of an unknown kind has no lines that count
            continue;
        Json kind{{"kind", tally.kind}};
        addLines(kind, tally.lines);
        object["kinds"].push_back(std::move(kind));
    }
    for (const auto& file : account.files) {
        Json entry{{"kind", file.kind.empty() ? Json() : Json(file.kind)},
                   {"path", file.path},
                   {"error", errorJson(file.error)}};
        addLines(entry, file.lines);
        addDetails(entry, file.lines);
        object["files"].push_back(std::move(entry));
    }
    for (const auto& unseen : account.unseen)
        object["unseen"].push_back(
            {{"kind", unseen.kind}, {"path", unseen.path}, {"error", errorJson(unseen.error)}});
    for (const auto& phase : account.phases) {
        Json entry{{"kind", phase.kind}, {"end", wordFor(phase.end, kPhaseEnds)}};
        addLines(entry, phase.lines);
        addDetails(entry, phase.lines);
        object["phases"].push_back(std::move(entry));
    }
    for (const auto& command : account.commands)
        object["commands"].push_back({{"command", command.command},
                                      {"attempts", command.attempts},
                                      {"acknowledged", command.acknowledged}});
    object["omitted"] = object["omitted"].get<std::uint64_t>() + account.omitted;
}

std::string jsonLine(const Json& document)
{
    return document.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace host
