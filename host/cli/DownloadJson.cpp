// SPDX-License-Identifier: MIT
// The accounts of all operations are joined: a user asked for one download. Scripts depend on the
// keys and words, so a change goes into docs/json.md and its schema, too.

#include "host/cli/DownloadJson.h"

#include "host/cli/ReportJson.h"

#include <algorithm>
#include <array>
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
    addAccountLists(document);
    for (const auto& operation : report.operations) {
        if (operation.account)
            addAccount(document, *operation.account);
    }
    document["messages"] = messagesJson(messages);
    return jsonLine(document);
}

} // namespace host
