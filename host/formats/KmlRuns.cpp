// SPDX-License-Identifier: MIT
// A run is one word: "new" or "more", then "-first" and "-last" for points to drop.

#include "host/formats/KmlRuns.h"

#include <gps/Characters.h>

#include <algorithm>
#include <cstddef>

namespace host {
namespace {

constexpr std::string_view kNew = "new";
constexpr std::string_view kMore = "more";
constexpr std::string_view kFirst = "-first";
constexpr std::string_view kLast = "-last";

bool takeStart(std::string_view& text, std::string_view expected)
{
    const bool isThere = text.starts_with(expected);
    text.remove_prefix(isThere ? expected.size() : 0);
    return isThere;
}

std::optional<KmlRun> runOf(std::string_view word)
{
    KmlRun run;
    run.isContinued = takeStart(word, kMore);
    if (!run.isContinued && !takeStart(word, kNew))
        return std::nullopt;
    run.dropsFirst = takeStart(word, kFirst);
    run.dropsLast = takeStart(word, kLast);
    return word.empty() ? std::optional{run} : std::nullopt;
}

} // namespace

void appendKmlRun(std::string& out, const KmlRun& run)
{
    if (!out.empty())
        out += ' ';
    out += run.isContinued ? kMore : kNew;
    if (run.dropsFirst)
        out += kFirst;
    if (run.dropsLast)
        out += kLast;
}

std::optional<std::vector<KmlRun>> readKmlRuns(std::string_view text)
{
    std::vector<KmlRun> runs;
    for (text = gps::trimmed(text); !text.empty(); text = gps::withoutLeadingSpace(text)) {
        const auto* const end = std::find_if(text.begin(), text.end(), gps::isWhiteSpace);
        const auto size = static_cast<std::size_t>(end - text.begin());
        const auto run = runOf(text.substr(0, size));
        if (!run)
            return std::nullopt;
        runs.push_back(*run);
        text.remove_prefix(size);
    }
    return runs;
}

} // namespace host
