// SPDX-License-Identifier: MIT
// Lines end in LF here: the check of a sentence accepts a CR before it.

#include "Sentences.h"

#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace simulator {
namespace {

using Known = std::unordered_set<std::string>;

void addSentence(std::string_view body, Sentences& sentences, Known& waypoints)
{
    const auto kind = body.substr(0, body.find(','));
    if (kind == "PMGNTRK")
        sentences.tracks.emplace_back(body);
    else if (kind == "PMGNRTE")
        sentences.routes.emplace_back(body);
    else if (kind == "PMGNWPL" && waypoints.emplace(body).second)
        sentences.waypoints.emplace_back(body);
}

std::optional<gps::Error> loadFile(const std::string& path, Sentences& sentences, Known& waypoints)
{
    std::string text;
    if (auto failure = gps::FileManager{}.readFile(path, text))
        return failure;
    for (std::string_view rest = text; !rest.empty();) {
        const auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line))
            addSentence(*body, sentences, waypoints);
    }
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> loadSentences(const std::string& path, Sentences& sentences)
{
    Known waypoints{sentences.waypoints.begin(), sentences.waypoints.end()};
    const gps::FileManager files;
    bool isFolder = false;
    if (!files.fileExists(path, &isFolder) || !isFolder)
        return loadFile(path, sentences, waypoints);
    auto enumerator = files.enumerator(path);
    while (const auto entry = enumerator.next()) {
        if (!entry->isFolder)
            (void)loadFile(gps::joinPath(path, entry->relativePath), sentences, waypoints);
    }
    return std::nullopt;
}

} // namespace simulator
