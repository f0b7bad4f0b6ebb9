// SPDX-License-Identifier: MIT
// Only the first text is kept: a file that is wrong once is often wrong in each of its points.

#include "host/formats/UnreadValues.h"

#include "host/base/Text.h"
#include "host/formats/XmlFile.h"

#include <fmt/format.h>

namespace host {

void UnreadValues::Kind::add(const std::string& text, std::ptrdiff_t at, std::size_t linesBelow)
{
    if (text.empty())
        return;
    if (count++ > 0)
        return;
    first = text;
    offset = at;
    moreLines = linesBelow;
}

void UnreadValues::add(const UnreadTexts& texts, std::ptrdiff_t offset, std::size_t moreLines)
{
    elevations_.add(texts.elevation, offset, moreLines);
    times_.add(texts.time, offset, moreLines);
}

std::vector<std::string> UnreadValues::sentences(const XmlFile& file) const
{
    std::vector<std::string> sentences;
    const auto add = [&](const Kind& kind, const char* one, const char* many) {
        constexpr std::size_t kMostShown = 40; // characters
        if (kind.count == 0)
            return;
        const auto text = displayText(kind.first, kMostShown);
        const auto what = kind.count == 1
                              ? fmt::format(R"({}, "{}", so it was left out)", one, text)
                              : fmt::format(R"({} {}, the first one "{}", so they were left out)",
                                            kind.count, many, text);
        sentences.push_back(*file.errorAt(kind.offset, what, "", kind.moreLines).description() +
                            '.');
    };
    add(elevations_, "an elevation is not a number of metres",
        "elevations are not numbers of metres");
    add(times_, "a time is not of the form 2024-06-01T12:00:00Z",
        "times are not of the form 2024-06-01T12:00:00Z");
    return sentences;
}

} // namespace host
