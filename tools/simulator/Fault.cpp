// SPDX-License-Identifier: MIT
// Reads and prints faults by the tables of names in the header.

#include "Fault.h"

#include <gps/NumberText.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace simulator {
namespace {

constexpr int kDelayWithoutNumber = 500; // milliseconds

template <typename Table> auto valueOf(const Table& table, std::string_view name)
{
    const auto found =
        std::find_if(table.begin(), table.end(), [=](const auto& row) { return row.name == name; });
    return found == table.end() ? std::nullopt : std::optional{found->value};
}

template <typename Table, typename Value> std::string nameOf(const Table& table, Value value)
{
    return std::string{std::find_if(table.begin(), table.end(), [=](const auto& row) {
                           return row.value == value;
                       })->name};
}

std::optional<int> numberOf(std::string_view text)
{
    const auto number = gps::wholeUnsigned(text);
    return number && *number <= std::numeric_limits<int>::max()
               ? std::optional{static_cast<int>(*number)}
               : std::nullopt;
}

// Removes the text up to the next ":" and that colon, and returns the text.
std::string_view takeWord(std::string_view& text)
{
    const auto word = text.substr(0, text.find(':'));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

} // namespace

bool isDataStep(Step step) noexcept
{
    return step == Step::kWaypointData || step == Step::kTrackData || step == Step::kRouteData;
}

bool applies(FaultKind kind, Step step) noexcept
{
    if (kind == FaultKind::kStop)
        return isDataStep(step);
    return kind != FaultKind::kWrongAck || !isDataStep(step);
}

std::optional<Fault> parseFault(std::string_view text)
{
    const bool hasNumber = std::count(text.begin(), text.end(), ':') == 2;
    const auto step = valueOf(kSteps, takeWord(text));
    const auto kind = valueOf(kFaultKinds, takeWord(text));
    if (!step || !kind || !applies(*kind, *step))
        return std::nullopt;
    const auto number = numberOf(text);
    return hasNumber == number.has_value() && (hasNumber || text.empty())
               ? std::optional{Fault{*step, *kind, number}}
               : std::nullopt;
}

std::chrono::milliseconds delayOf(const Fault& fault) noexcept
{
    return std::chrono::milliseconds{fault.number.value_or(kDelayWithoutNumber)};
}

std::string describe(const Fault& fault)
{
    const auto text =
        fmt::format("{}:{}", nameOf(kSteps, fault.step), nameOf(kFaultKinds, fault.kind));
    return fault.number ? fmt::format("{}:{}", text, *fault.number) : text;
}

} // namespace simulator
