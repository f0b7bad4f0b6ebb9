// SPDX-License-Identifier: MIT
// Merging keeps the order in which names first appear: records keep their positions in the file,
// and new ones follow.

#include "DeviceFileWriters.h"

#include "../codec/CodecLog.h"
#include "../codec/FieldText.h"
#include "../codec/GeoCacheSentence.h"
#include "../codec/RouteSentence.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/Lines.h"
#include "../common/Records.h"
#include "DeviceFileReaders.h"
#include "NamedLines.h"

#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileManager.h>
#include <platform/System/LargePages.h>

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

/// Joins the lines of a file, which may be millions, as they are made.
class FileText {
public:
    /// @param records  how many sentences to expect
    explicit FileText(std::size_t records)
    {
        constexpr std::size_t kUsualLine = 80; // bytes
        text_.reserve(records * kUsualLine);
        gps::useLargePages(text_.data(), text_.capacity());
    }

    /// The lines so far, to which lines are added.
    [[nodiscard]] std::string& lines() noexcept { return text_; }

    /// Appends the closing sentence and returns the complete text.
    [[nodiscard]] std::string finish() &&
    {
        text_ += gps::NMEAUtils::addChecksumToNMEASentence(kEndSentence);
        return std::move(text_);
    }

private:
    std::string text_;
};

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

/// The records of a file and those that are merged into it, by name: the file's own first, each
/// where it is or replaced, then the new ones. Decodes the file's records one by one, if at all.
class NamedMerge {
public:
    /// @param lines  gets what becomes of the file's lines; may be null
    NamedMerge(const NamedKind& kind, std::string_view present, gps::LineAccount* lines)
        : present_(kind, present, lines != nullptr ? *lines : unused_)
    {}

    /// Adds a record, or replaces the one that has its name.
    /// Precondition: both outlive this object.
    void set(std::string_view name, const gps::Value& element)
    {
        const auto index = present_.indexOf(name);
        if (index >= merged_.size())
            merged_.resize(index + 1);
        merged_[index] = &element;
    }

    [[nodiscard]] std::size_t size() const noexcept
    {
        return std::max(merged_.size(), present_.count());
    }

    /// Appends the lines of the records in order. Most of the file's own do not change, so they are
    /// copied without being decoded.
    /// @param appendLine  appends the line of a record; false if there must be no file
    /// @return            false as soon as appendLine() returns that
    [[nodiscard]] bool appendTo(std::string& text, bool (*appendLine)(const gps::Value& element,
                                                                      std::string& text)) const
    {
        gps::Value own{gps::Dictionary{}}; // one for all of the file's records
        for (std::size_t index = 0; index < size(); ++index) {
            const auto* element = index < merged_.size() ? merged_[index] : nullptr;
            if (element == nullptr) {
                if (present_.appendAsWritten(index, text))
                    continue;
                auto& record = *own.as<gps::Dictionary>();
                record.clear();
                present_.read(index, record);
                element = &own;
            }
            if (!appendLine(*element, text))
                return false;
        }
        return true;
    }

private:
    gps::LineAccount unused_;
    NamedLines present_;
    std::vector<const gps::Value*> merged_; // by index in present_; null: the file's own
};

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
        if (!error || error->code() != gps::FileErrorCode::kWriteFileExists)
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
    const auto& points = pointsOf(track);
    FileText text{points.size()};
    for (const auto& element : points) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
        if (point == nullptr)
            continue;
        if (appendTrackPointSentence(text.lines(), *point))
            text.lines() += kFileLineEnd;
        else
            logFailedSentence(element);
    }
    return std::move(text).finish();
}

std::string mergedWaypointText(const gps::Array& records, std::string_view present,
                               gps::LineAccount* lines)
{
    NamedMerge merge{kWayPointLines, present, lines};
    for (const auto& element : records) {
        const auto* record = element.as<gps::Dictionary>();
        if (const auto* name = record != nullptr ? record->findString("name") : nullptr)
            merge.set(*name, element);
    }
    FileText text{merge.size()};
    (void)merge.appendTo(text.lines(), appendWayPointLine);
    return std::move(text).finish();
}

std::optional<std::string> mergedGeocacheText(const gps::Array& records, std::string_view present,
                                              gps::LineAccount* lines)
{
    std::vector<std::string> keys;
    keys.reserve(records.size()); // the merge has views into them
    NamedMerge merge{kGeoCacheLines, present, lines};
    for (const auto& element : records) {
        const auto* record = element.as<gps::Dictionary>();
        if (auto key = record != nullptr ? geocacheKey(*record) : std::nullopt)
            merge.set(keys.emplace_back(*std::move(key)), element);
    }
    FileText text{merge.size()};
    const bool isComplete = merge.appendTo(text.lines(), appendGeoCacheLine);
    return isComplete ? std::optional{std::move(text).finish()} : std::nullopt;
}

std::string mergedRouteText(const gps::Array& records, std::string_view present,
                            gps::LineAccount* lines, std::vector<RenamedPoint>* renamed)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    collectRoutes(present, waypoints, routes, lines);
    for (const auto& element : records) {
        if (const auto* route = element.as<gps::Dictionary>())
            mergeRoute(*route, waypoints, routes, renamed);
    }

    const auto list = sortedByName(waypoints.takeValues());
    FileText text{2 * list.size()};
    for (const auto& element : list)
        (void)appendWayPointLine(element, text.lines());
    std::int32_t number = 0;
    for (const auto& element : routes.takeValues()) {
        auto route = *element.as<gps::Dictionary>();
        route.set("number", ++number);
        for (const auto& sentence : makeRouteSentencesFromWaypointList(pointsOf(route), route))
            text.lines().append(sentence).append(kFileLineEnd);
    }
    return std::move(text).finish();
}

void mergeRoute(const gps::Dictionary& route, gps::Dictionary& waypoints, gps::Dictionary& routes,
                std::vector<RenamedPoint>* renamed)
{
    const auto* routeName = route.findString("name");
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
        gps::Value point = element; // shares the record unless it is renamed
        auto newName = *name;
        if (present != nullptr) {
            newName = renames.next(*name);
            point.as<gps::Dictionary>()->set("name", newName);
            if (renamed != nullptr)
                renamed->push_back({routeName != nullptr ? *routeName : "", *name,
                                    magellanStringFromDictionary(*point.as<gps::Dictionary>(),
                                                                 "name", kLongestName)});
        }
        waypoints.set(newName, point);
        points.push_back(std::move(point));
    }
    if (routeName == nullptr)
        return;
    gps::Dictionary merged = route;
    merged.set("points", std::move(points));
    routes.set(*routeName, std::move(merged));
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
