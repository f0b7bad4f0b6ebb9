// SPDX-License-Identifier: MIT
// Every list ends after kMostEntries, so that a large send does not make a document that nobody
// can read at once. Scripts depend on the keys and words: a change goes into docs/json.md, too.

#include "host/cli/SendJson.h"

#include "host/cli/ReportJson.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostEntries = 1000;

constexpr std::array<std::string_view, 3> kActions{"create", "merge", "skip"};
constexpr std::array<std::string_view, 10> kResults{
    "written",   "renamed",  "also changed", "missing", "unreadable",
    "different", "put back", "lost",         "blocked", "nothing to write"};

// A list of JSON objects. What does not fit is counted.
template <typename List, typename Convert>
Json listOf(const List& list, std::size_t& omitted, const Convert& convert)
{
    Json array = Json::array();
    for (const auto& element : list) {
        if (array.size() < kMostEntries)
            array.push_back(convert(element));
        else
            ++omitted;
    }
    return array;
}

Json nameJson(const std::string& name)
{
    return name.empty() ? Json() : Json(name);
}

RecordCounts requestedCounts(const PreparedSend& send)
{
    auto counts = send.request.data ? countRecords(*send.request.data) : RecordCounts{};
    counts += send.present;
    counts += send.repeated;
    counts += send.leftOut();
    return counts;
}

Json fileJson(const gps::PlannedFile& planned, const SentFile* sent)
{
    const bool isKnown = sent != nullptr && sent->result != SentFile::Result::kUnreadable;
    const bool hasWriteError = sent != nullptr && sent->writeError;
    return {{"kind", planned.kind},
            {"path", planned.path},
            {"action", wordFor(planned.action, kActions)},
            {"result", sent != nullptr ? wordFor(sent->result, kResults) : Json()},
            {"writtenAs", sent != nullptr ? nameJson(sent->writtenPath) : Json()},
            {"asBefore", isKnown ? Json(sent->isAsBefore) : Json()},
            {"droppedLines", planned.droppedLines},
            {"lostRecords", sent != nullptr ? sent->lostRecords : 0},
            {"error", errorJson(hasWriteError ? sent->writeError : planned.error)}};
}

// Results are in the plan's order; there are none of a send that was not run.
Json filesJson(const PreparedSend& send, const SendReport& report, std::size_t& omitted)
{
    std::size_t next = 0;
    return listOf(send.plan.files, omitted, [&](const gps::PlannedFile& planned) {
        const auto* const sent = next < report.files.size() ? &report.files[next] : nullptr;
        ++next;
        return fileJson(planned, sent);
    });
}

Json replacedJson(const PreparedSend& send, std::size_t& omitted)
{
    return listOf(send.replaced, omitted, [](const ReplacedRecord& record) -> Json {
        return {{"kind", record.kind}, {"name", record.name}};
    });
}

void addLosses(Json& document, const PreparedSend& send, std::size_t& omitted)
{
    document["lostFields"] =
        listOf(send.plan.lostFields, omitted, [](const gps::LostField& lost) -> Json {
            return {{"kind", lost.kind}, {"field", lost.field}, {"records", lost.records}};
        });
    for (const auto& text : send.unstoredTexts())
        document["lostFields"].push_back({{"kind", std::string{text.noun} + 's'},
                                          {"field", text.field},
                                          {"records", text.records}});
    document["segments"] =
        listOf(send.segmentedTracks, omitted, [&](const SegmentedTrack& track) -> Json {
            return {{"track", nameJson(track.name)},
                    {"segments", track.segments},
                    {"joined", send.request.segmentRule == SegmentRule::kJoin}};
        });
    document["textChanges"] =
        listOf(send.textChanges, omitted, [](const TextChange& change) -> Json {
            return {{"kind", change.kind},
                    {"key", change.key},
                    {"before", change.before},
                    {"after", change.after},
                    {"dropped", change.dropped}};
        });
    document["remarks"] =
        listOf(send.plan.remarks, omitted, [](const std::string& remark) { return Json(remark); });
}

Json backupJson(const SendReport& report)
{
    if (!report.backup)
        return {};
    return {{"path", report.backup->path},
            {"name", report.backup->name},
            {"notCopied", report.notBackedUp},
            {"deleted", report.deletedBackups}};
}

void addFailures(Json& document, const PreparedSend& send, const SendReport& report,
                 std::size_t& omitted)
{
    document["obstacle"] = errorJson(report.obstacle ? report.obstacle : report.backupError);
    document["errors"] =
        listOf(report.errors, omitted, [](const gps::Error& error) { return errorJson(error); });
    omitted += report.moreErrors;
    document["missingKinds"] = kindsJson(report.missingKinds);
    document["missingRecords"] =
        listOf(send.request.isDryRun ? send.unplanned : report.missingRecords, omitted,
               [](const MissingRecord& record) -> Json {
                   return {{"kind", record.kind}, {"name", orNull(record.name)}};
               });
}

Json accountJson(const std::optional<gps::TransferAccount>& account)
{
    if (!account)
        return {};
    Json object = Json::object();
    addAccountLists(object);
    addAccount(object, *account);
    return object;
}

} // namespace

std::string sendJson(const PreparedSend& send, const SendReport& report,
                     const std::vector<Message>& messages, ExitStatus status)
{
    const bool isDryRun = send.request.isDryRun;
    const bool isSent = !isDryRun && send.device.driver != nullptr && report.isComplete();
    const bool isComplete = isSent && status == ExitStatus::kSuccess;
    const auto toSend = send.request.data ? countRecords(*send.request.data) : RecordCounts{};
    std::size_t omitted = 0;
    Json document{{"status", static_cast<int>(status)},
                  {"complete", isComplete},
                  {"interrupted", report.wasStopped},
                  {"dryRun", isDryRun},
                  {"device", nameJson(send.device.location)},
                  {"requested", countsJson(requestedCounts(send))},
                  {"present", countsJson(send.present)},
                  {"repeated", countsJson(send.repeated)},
                  {"leftOut", countsJson(send.leftOut())},
                  {"sent", isSent ? countsJson(toSend) : Json()}};
    document["files"] = filesJson(send, report, omitted);
    document["replaced"] = replacedJson(send, omitted);
    addLosses(document, send, omitted);
    document["backup"] = backupJson(report);
    addFailures(document, send, report, omitted);
    document["account"] = accountJson(report.account);
    document["omitted"] = omitted;
    document["messages"] = messagesJson(messages);
    return jsonLine(document);
}

} // namespace host
