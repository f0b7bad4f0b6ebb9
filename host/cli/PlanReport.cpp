// SPDX-License-Identifier: MIT

#include "host/cli/PlanReport.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/cli/Console.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace host {
namespace {

std::string_view wordFor(gps::PlannedFile::Action action)
{
    switch (action) {
    case gps::PlannedFile::Action::kCreate:
        return "make";
    case gps::PlannedFile::Action::kMerge:
        return "merge into";
    case gps::PlannedFile::Action::kSkip:
        return "leave";
    }
    return {};
}

std::string_view fromDevice(std::string_view path, std::string_view device)
{
    if (!path.starts_with(device))
        return path;
    path.remove_prefix(device.size());
    return path.substr(path.starts_with('/') ? 1 : 0);
}

std::string lineFor(const TextChange& change)
{
    std::string line = std::string{change.kind} + ' ' + std::string{change.key} + ": \"" +
                       change.before + "\" becomes \"" + change.after + '"';
    if (!change.dropped.empty())
        line += ", without \"" + change.dropped + '"';
    return line;
}

void appendLine(std::string& text, std::string_view line)
{
    text += displayText(line);
    text += '\n';
}

std::size_t countOf(const gps::Dictionary& data, std::string_view key)
{
    const auto* const records = data.findArray(key);
    return records != nullptr ? records->size() : 0;
}

} // namespace

std::string planReport(const gps::SendPlan& plan, const std::vector<TextChange>& changes,
                       const std::string& device)
{
    std::string text;
    for (const auto& file : plan.files) {
        std::string line =
            std::string{wordFor(file.action)} + ": " + std::string{fromDevice(file.path, device)};
        if (file.action == gps::PlannedFile::Action::kSkip)
            line += file.error ? " (" + sentencesOf(*file.error) + ')' : " (nothing to write)";
        appendLine(text, line);
    }
    for (const auto& change : changes)
        appendLine(text, lineFor(change));
    for (const auto& remark : plan.remarks)
        appendLine(text, remark);
    return text;
}

std::string recordCounts(const gps::Dictionary& data)
{
    std::string text;
    for (const std::string_view kind : {"waypoint", "route", "track"}) {
        const auto count = countOf(data, kind);
        text += (text.empty() ? "" : ", ") + std::to_string(count) + ' ' + std::string{kind} +
                (count == 1 ? "" : "s");
    }
    return text;
}

} // namespace host
