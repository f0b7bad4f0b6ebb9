// SPDX-License-Identifier: MIT
// Empty lines harm nobody, so any number of whole line ends separates two sentences.

#include "host/transfer/LineEnds.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"

#include <platform/System/FileManager.h>

#include <algorithm>

namespace host {

bool hasOtherLineEnds(std::string_view content) noexcept
{
    constexpr std::string_view kEnds = "\r\n";
    for (auto next = content.find_first_of(kEnds); next != std::string_view::npos;
         next = content.find_first_of(kEnds, next)) {
        const auto end = std::min(content.find_first_not_of(kEnds, next), content.size());
        const auto lineEnd = content.substr(next, end - next);
        bool isWhole = lineEnd.size() % kEnds.size() == 0;
        for (std::size_t i = 0; isWhole && i < lineEnd.size(); i += kEnds.size())
            isWhole = lineEnd.substr(i, kEnds.size()) == kEnds;
        if (!isWhole && end < content.size() && content[end] == '$')
            return true;
        next = end;
    }
    return false;
}

std::optional<gps::Error> explainLineEnds(const std::string& path)
{
    std::string content;
    if (gps::FileManager{}.readFile(path, content) || !hasOtherLineEnds(content))
        return std::nullopt;
    return hostError(tr("Lines of this file do not end with CR LF, as a receiver writes them, so "
                        "their records were not read"),
                     tr("Copy the file from the receiver again, or convert it with a program such "
                        "as unix2dos"),
                     path);
}

} // namespace host
