// SPDX-License-Identifier: MIT
// The values are tried on a table of commands that nobody uses otherwise.

#include "host/options/ConfigurationCheck.h"

#include "host/options/CommandTable.h"
#include "host/options/RawOptions.h"
#include "host/transfer/TimeRange.h"

#include <variant>
#include <vector>

namespace host {
namespace {

const std::string* textOf(const ConfiguredOption& option)
{
    const auto* const values = std::get_if<std::vector<std::string>>(&option.value);
    return values != nullptr && !values->empty() ? &values->front() : nullptr;
}

std::string badFormat(const ConfiguredOption& option)
{
    const auto* const text = textOf(option);
    return option.name == "format" && text != nullptr ? formatMistake(*text) : "";
}

// Reported at the second one of the two. Precondition: options before it are valid.
std::string contradictingTimes(const ConfiguredOption& option, const Configuration& configuration)
{
    const bool isFirst = option.name == "since";
    if (!isFirst && option.name != "until")
        return {};
    for (const auto& other : configuration.options) {
        if (&other == &option)
            return {};
        const auto* const text = textOf(option);
        const auto* const otherText = textOf(other);
        if (other.command != option.command || other.name != (isFirst ? "until" : "since") ||
            text == nullptr || otherText == nullptr)
            continue;
        const auto range = readTimeRange(*text);
        const auto otherRange = readTimeRange(*otherText);
        if (range && otherRange &&
            (isFirst ? range->first > otherRange->last : otherRange->first > range->last))
            return R"("since" is later than "until")";
    }
    return {};
}

} // namespace

std::string readCheckedConfiguration(Configuration& configuration)
{
    if (auto wrong = readConfiguration(configuration); !wrong.empty())
        return wrong;
    CommandTable untyped;
    auto mistake = checkConfiguration(configuration, untyped.app(), untyped.exclusions(),
                                      [&configuration](const ConfiguredOption& option) {
                                          auto wrong = badFormat(option);
                                          return wrong.empty()
                                                     ? contradictingTimes(option, configuration)
                                                     : wrong;
                                      });
    return mistake.empty() ? configuration.windowMistake : mistake;
}

} // namespace host
