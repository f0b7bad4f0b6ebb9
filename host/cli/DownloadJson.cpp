// SPDX-License-Identifier: MIT
// The accounts of all operations are joined: a user asked for one download. Scripts depend on the
// keys and words, so a change goes into docs/json.md and its schema, too.

#include "host/cli/DownloadJson.h"

#include "host/cli/ReportJson.h"
#include "host/points/Points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {
namespace {

constexpr std::array<std::string_view, 4> kVoices{"nothing", "noise", "receiver", "nmea"};
constexpr std::array<std::string_view, 3> kOutputStates{"none", "complete", "partial"};

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

Json leftOutJson(const FilterReport& report)
{
    return {{"times", countsJson(report.choice.byTime)},
            {"names", countsJson(report.choice.byName)},
            {"geocaches", countsJson(report.choice.geocaches)},
            {"savedBefore", countsJson(report.savedBefore)}};
}

Json timeJson(const std::optional<std::int64_t>& time)
{
    if (!time)
        return {};
    std::string text;
    appendTimestamp(text, *time, 'T');
    return text + 'Z';
}

Json listJson(const std::vector<SummaryRow>& rows)
{
    Json list = Json::array();
    for (const auto& row : rows)
        list.push_back(
            {{"kind", row.kind},
             {"name", row.name},
             {"points", row.points},
             {"first", timeJson(row.first)},
             {"last", timeJson(row.last)},
             {"kilometres",
              row.kilometres ? Json(std::round(*row.kilometres * 1000) / 1000) : Json()}});
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
                         ExitStatus status, const std::vector<SummaryRow>* list)
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
        {"chosen", countsJson(report.chosen)},
        {"leftOut", leftOutJson(report.leftOut)},
        {"untimed", countsJson(report.leftOut.choice.untimed)},
        {"unmatched", report.leftOut.choice.unmatchedNames},
        {"written", countsJson(report.written)},
        {"segments", {{"tracks", report.splits.tracks}, {"gaps", report.splits.gaps}}},
        {"list", list != nullptr ? listJson(*list) : Json()},
        {"repeats", repeatsJson(report)}};
    addAccountLists(document);
    for (const auto& operation : report.operations) {
        if (operation.account)
            addAccount(document, *operation.account);
    }
    document["messages"] = messagesJson(messages);
    return jsonLine(document);
}

} // namespace host
