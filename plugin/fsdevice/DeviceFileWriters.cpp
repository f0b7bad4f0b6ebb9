// SPDX-License-Identifier: MIT
// Merging goes through dictionaries, which keep the order in which keys were first set: records
// keep their positions in the file, and new ones follow.

#include "DeviceFileWriters.h"

#include "../codec/CodecLog.h"
#include "../codec/GeoCacheSentence.h"
#include "../codec/RouteSentence.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "DeviceFileReaders.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace magellan {
namespace {

std::optional<gps::Error> write(std::string_view text, const std::string& path)
{
    return gps::FileManager{}.writeAsciiFileAtomically(path, text);
}

/// Joins a file's lines and appends the closing sentence.
std::string textOf(const std::vector<std::string>& sentences)
{
    std::size_t size = 0;
    for (const auto& sentence : sentences)
        size += sentence.size() + 2;
    const std::string closing = gps::NMEAUtils::addChecksumToNMEASentence("PMGNCMD,END");

    std::string text;
    text.reserve(size + closing.size());
    for (const auto& sentence : sentences)
        text.append(sentence).append("\r\n");
    text += closing;
    return text;
}

/// The array under "points"; empty if it is missing or not an array.
const gps::Array& pointsOf(const gps::Dictionary& record)
{
    static const auto& empty = *new gps::Array;
    const auto* points = record.findArray("points");
    return points != nullptr ? *points : empty;
}

/// Sorts (name, index) pairs instead of records, to keep comparisons in cache.
gps::Array sortedByName(gps::Array records)
{
    std::vector<std::pair<std::string, std::size_t>> names;
    names.reserve(records.size());
    for (const auto& record : records)
        names.emplace_back(*record.as<gps::Dictionary>()->findString("name"), names.size());
    std::sort(names.begin(), names.end());

    gps::Array sorted;
    sorted.reserve(records.size());
    for (const auto& [name, index] : names)
        sorted.push_back(std::move(records[index]));
    return sorted;
}

/// Numbers the points of one route that clash with a waypoint of their name.
class Renames {
public:
    /// Returns "NAME 1" at the first call with a name, "NAME 2" at the second.
    std::string next(const std::string& name)
    {
        const auto* used = counters_.find(name);
        const std::int32_t counter = (used != nullptr ? used->int32Reading() : 0) + 1;
        counters_.set(name, counter);
        return name + " " + std::to_string(counter);
    }

private:
    gps::Dictionary counters_;
};

/// The text of the file that records are merged into; empty if it cannot be read. The reader has
/// logged why.
std::string presentText(RecordKind kind, const std::string& path, gps::FileAccount* account)
{
    std::string text;
    (void)readDeviceFile(kind, path, text, account);
    return text;
}

gps::LineAccount* linesOf(gps::FileAccount* account) noexcept
{
    return account != nullptr ? &account->lines : nullptr;
}

/// Saves a track under a free name. Another program may take the name before it is used here.
std::optional<gps::Error> saveNewTrack(const gps::Dictionary& track, const std::string& folder)
{
    const auto text = trackText(track);
    for (int attempt = 0; attempt < kTrackNumbers; ++attempt) {
        const auto path = getNextFileNameFromPath(folder, trackFileName);
        if (!path)
            break;
        auto error = gps::FileManager{}.writeNewAsciiFile(*path, text);
        if (!error || !(gps::FileErrorCode::kWriteFileExists == error->code()))
            return error;
    }
    return gps::makeFileError(gps::FileErrorCode::kWriteFileExists,
                              gps::joinPath(folder, trackFileName(kTrackNumbers - 1)));
}

std::optional<gps::Error> mergeIntoDefaultFile(
    const gps::Array& records, const std::string& folder, bool deleting, std::string_view file,
    std::optional<gps::Error> (*merge)(const gps::Array&, const std::string&, gps::FileAccount*),
    gps::FileAccount* present)
{
    if (deleting)
        deleteFilesFromDir(folder, gps::pathExtension(file));
    return merge(records, gps::joinPath(folder, file), present);
}

} // namespace

std::optional<gps::Error> saveTracks(const gps::Array& records, const std::string& folder,
                                     bool deleting)
{
    if (deleting)
        deleteFilesFromDir(folder, "log");
    for (const auto& element : records) {
        const auto* track = element.as<gps::Dictionary>();
        if (track == nullptr)
            continue;
        if (auto error = saveNewTrack(*track, folder))
            return error;
    }
    return std::nullopt;
}

std::optional<gps::Error> saveWaypoints(const gps::Array& records, const std::string& folder,
                                        bool deleting, gps::FileAccount* present)
{
    return mergeIntoDefaultFile(records, folder, deleting, kDefaultWaypointFile, mergeWaypoints,
                                present);
}

std::optional<gps::Error> saveRoutes(const gps::Array& records, const std::string& folder,
                                     bool deleting, gps::FileAccount* present)
{
    return mergeIntoDefaultFile(records, folder, deleting, kDefaultRouteFile, mergeRoutes, present);
}

std::optional<gps::Error> saveGeocaches(const gps::Array& records, const std::string& folder,
                                        bool deleting, gps::FileAccount* present)
{
    return mergeIntoDefaultFile(records, folder, deleting, kDefaultGeocacheFile, mergeGeocaches,
                                present);
}

std::optional<gps::Error> saveTrack(const gps::Dictionary& track, const std::string& path)
{
    return write(trackText(track), path);
}

std::optional<gps::Error> mergeWaypoints(const gps::Array& records, const std::string& path,
                                         gps::FileAccount* present)
{
    const auto text = presentText(RecordKind::kWaypoints, path, present);
    return write(mergedWaypointText(records, text, linesOf(present)), path);
}

std::optional<gps::Error> mergeGeocaches(const gps::Array& records, const std::string& path,
                                         gps::FileAccount* present)
{
    const auto before = presentText(RecordKind::kGeocaches, path, present);
    const auto text = mergedGeocacheText(records, before, linesOf(present));
    return text ? write(*text, path) : std::nullopt;
}

std::optional<std::string> geocacheKey(const gps::Dictionary& record)
{
    if (const auto* id = record.find("cacheID")) {
        if (const auto* text = id->as<std::string>())
            return *text;
        if (const auto* number = id->as<gps::Number>())
            return number->text();
    }
    const auto* name = record.findString("name");
    return name != nullptr ? std::optional{*name} : std::nullopt;
}

std::optional<gps::Error> mergeRoutes(const gps::Array& records, const std::string& path,
                                      gps::FileAccount* present)
{
    const auto text = presentText(RecordKind::kRoutes, path, present);
    return write(mergedRouteText(records, text, linesOf(present)), path);
}

std::string trackText(const gps::Dictionary& track)
{
    std::vector<std::string> sentences;
    for (const auto& element : pointsOf(track)) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
        if (point == nullptr)
            continue;
        if (auto sentence = makeTrackPointSentenceWithPoint(*point))
            sentences.push_back(std::move(*sentence));
        else
            logFailedSentence(element);
    }
    return textOf(sentences);
}

std::string mergedWaypointText(const gps::Array& records, std::string_view present,
                               gps::LineAccount* lines)
{
    gps::Dictionary merged;
    collectWayPoints(present, merged, lines);
    for (const auto& element : records) {
        const auto* record = element.as<gps::Dictionary>();
        if (const auto* name = record != nullptr ? record->findString("name") : nullptr)
            merged.set(*name, element);
    }
    return textOf(makeWayPointSentencesFromWaypointList(merged.takeValues()));
}

std::optional<std::string> mergedGeocacheText(const gps::Array& records, std::string_view present,
                                              gps::LineAccount* lines)
{
    gps::Dictionary merged;
    collectGeoCaches(present, merged, lines);
    for (const auto& element : records) {
        const auto* record = element.as<gps::Dictionary>();
        if (const auto key = record != nullptr ? geocacheKey(*record) : std::nullopt)
            merged.set(*key, element);
    }
    const auto sentences = makeGeocacheSentencesFromGeocacheList(merged.takeValues());
    return sentences ? std::optional{textOf(*sentences)} : std::nullopt;
}

std::string mergedRouteText(const gps::Array& records, std::string_view present,
                            gps::LineAccount* lines)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    collectRoutes(present, waypoints, routes, lines);
    for (const auto& element : records) {
        if (const auto* route = element.as<gps::Dictionary>())
            mergeRoute(*route, waypoints, routes);
    }

    auto sentences = makeWayPointSentencesFromWaypointList(sortedByName(waypoints.takeValues()));
    std::int32_t number = 0;
    for (auto& element : routes.takeValues()) {
        auto& route = *element.as<gps::Dictionary>();
        route.set("number", ++number);
        for (auto& sentence : makeRouteSentencesFromWaypointList(*route.findArray("points"), route))
            sentences.push_back(std::move(sentence));
    }
    return textOf(sentences);
}

void mergeRoute(const gps::Dictionary& route, gps::Dictionary& waypoints, gps::Dictionary& routes)
{
    gps::Array points;
    Renames renames;
    for (const auto& element : pointsOf(route)) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* name = record != nullptr ? record->findString("name") : nullptr;
        if (name == nullptr)
            continue;
        const auto* present = waypoints.find(*name);
        if (present != nullptr && *present == element) { // stored already
            points.push_back(element);
            continue;
        }
        gps::Dictionary point = *record;
        if (present != nullptr)
            point.set("name", renames.next(*name));
        waypoints.set(*point.findString("name"), point);
        points.emplace_back(std::move(point));
    }
    const auto* name = route.findString("name");
    if (name == nullptr)
        return;
    gps::Dictionary merged = route;
    merged.set("points", std::move(points));
    routes.set(*name, std::move(merged));
}

void deleteFilesFromDir(const std::string& folder, std::string_view extension)
{
    const gps::FileManager files;
    auto enumerator = files.enumerator(folder);
    while (const auto entry = enumerator.next()) {
        bool isFolder = false;
        if (gps::pathExtension(entry->relativePath) == extension &&
            files.fileExists(entry->relativePath, &isFolder) && !isFolder)
            (void)files.removeItem(folder);
    }
}

std::optional<std::string> getNextFileNameFromPath(const std::string& folder,
                                                   std::string (*name)(int))
{
    for (int number = 0; number < kTrackNumbers; ++number) {
        auto path = gps::joinPath(folder, name(number));
        if (gps::FileManager{}.isFree(path))
            return path;
    }
    return std::nullopt;
}

std::string trackFileName(int number)
{
    std::string name = "TKLG";
    gps::appendPadded(name, number, 3);
    return name + ".log";
}

} // namespace magellan
