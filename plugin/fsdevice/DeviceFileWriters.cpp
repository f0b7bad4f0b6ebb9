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
#include "../common/NameTable.h"
#include "../common/Records.h"
#include "DeviceFileReaders.h"

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
    /// Precondition: `present` outlives this object.
    explicit NamedMerge(const NamedLines& present) : present_(present) {}

    /// Adds a record, or replaces the one that has its name.
    /// Precondition: both outlive this object.
    void set(std::string_view name, const gps::Value& element)
    {
        const auto own = present_.find(name);
        const auto index = own ? *own : present_.count() + added_.indexOf(name);
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
    /// @param isWhole  out: false if a record has no line
    /// @return         false if there must be no file
    [[nodiscard]] bool appendTo(std::string& text, bool& isWhole) const
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
            const auto before = text.size();
            if (!present_.kind().appendLine(*element, text))
                return false;
            isWhole = isWhole && text.size() > before;
        }
        return true;
    }

private:
    const NamedLines& present_;
    NameTable added_; // names that no line has; indices after those of present_
    std::vector<const gps::Value*> merged_; // by index; null: the file's own
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

NamedLines namedLines(const NamedKind& kind, std::string_view present, gps::LineAccount* account)
{
    gps::LineAccount unused;
    return NamedLines{kind, present, account != nullptr ? *account : unused};
}

/// Merges waypoints or geocaches into a file. A text that was planned from the same records and the
/// same file is written as it is.
std::optional<gps::Error> mergeNamed(const NamedKind& kind, const gps::Array& records,
                                     const std::string& path, gps::FileAccount* account,
                                     const PlannedTexts* planned)
{
    const auto present = presentText(kind.kind, path, account);
    if (auto merged =
            planned != nullptr ? planned->find(kind.kind, records, present) : std::nullopt) {
        if (account != nullptr)
            account->lines = std::move(merged->present);
        return write(merged->text, path);
    }
    const auto made = mergedNamedText(records, namedLines(kind, present, linesOf(account)));
    return made ? write(made->text, path) : std::nullopt;
}

/// Saves a track under a free name. Another program may take the name before it is used here.
std::optional<gps::Error> saveNewTrack(const gps::Value& track, const std::string& folder,
                                       const PlannedTexts* planned)
{
    const auto known = planned != nullptr ? planned->findTrack(track) : std::nullopt;
    const auto text =
        known ? *known : gps::SharedText{trackText(*track.as<gps::Dictionary>()).text};
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

/// The path of a default file.
std::string defaultFile(const std::string& folder, bool deleting, std::string_view file)
{
    if (deleting)
        deleteFilesFromDir(folder, gps::pathExtension(file));
    return gps::joinPath(folder, file);
}

} // namespace

std::optional<gps::Error> saveTracks(const gps::Array& records, const std::string& folder,
                                     bool deleting, const PlannedTexts* planned)
{
    if (deleting)
        deleteFilesFromDir(folder, "log");
    for (const auto& element : records) {
        if (element.as<gps::Dictionary>() == nullptr)
            continue;
        if (auto error = saveNewTrack(element, folder, planned))
            return error;
    }
    return std::nullopt;
}

std::optional<gps::Error> saveWaypoints(const gps::Array& records, const std::string& folder,
                                        bool deleting, gps::FileAccount* present,
                                        const PlannedTexts* planned)
{
    return mergeWaypoints(records, defaultFile(folder, deleting, kDefaultWaypointFile), present,
                          planned);
}

std::optional<gps::Error> saveRoutes(const gps::Array& records, const std::string& folder,
                                     bool deleting, gps::FileAccount* present)
{
    return mergeRoutes(records, defaultFile(folder, deleting, kDefaultRouteFile), present);
}

std::optional<gps::Error> saveGeocaches(const gps::Array& records, const std::string& folder,
                                        bool deleting, gps::FileAccount* present,
                                        const PlannedTexts* planned)
{
    return mergeGeocaches(records, defaultFile(folder, deleting, kDefaultGeocacheFile), present,
                          planned);
}

std::optional<gps::Error> saveTrack(const gps::Dictionary& track, const std::string& path)
{
    return write(trackText(track).text, path);
}

std::optional<gps::Error> mergeWaypoints(const gps::Array& records, const std::string& path,
                                         gps::FileAccount* present, const PlannedTexts* planned)
{
    return mergeNamed(kWayPointLines, records, path, present, planned);
}

std::optional<gps::Error> mergeGeocaches(const gps::Array& records, const std::string& path,
                                         gps::FileAccount* present, const PlannedTexts* planned)
{
    return mergeNamed(kGeoCacheLines, records, path, present, planned);
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

MadeText trackText(const gps::Dictionary& track)
{
    const auto& points = pointsOf(track);
    FileText text{points.size()};
    bool isWhole = true;
    for (const auto& element : points) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
        if (point == nullptr)
            continue;
        if (appendTrackPointSentence(text.lines(), *point)) {
            text.lines() += kFileLineEnd;
        } else {
            logFailedSentence(element);
            isWhole = false;
        }
    }
    return {std::move(text).finish(), isWhole};
}

std::optional<MadeText> mergedNamedText(const gps::Array& records, const NamedLines& present)
{
    const bool isOfGeocaches = present.kind().kind == RecordKind::kGeocaches;
    std::vector<std::string> keys;
    keys.reserve(isOfGeocaches ? records.size() : 0); // the merge has views into them
    NamedMerge merge{present};
    for (const auto& element : records) {
        const auto* record = element.as<gps::Dictionary>();
        if (record == nullptr)
            continue;
        if (!isOfGeocaches) {
            if (const auto* name = record->findString("name"))
                merge.set(*name, element);
        } else if (auto key = geocacheKey(*record)) {
            merge.set(keys.emplace_back(*std::move(key)), element);
        }
    }
    FileText text{merge.size()};
    bool isWhole = true;
    if (!merge.appendTo(text.lines(), isWhole))
        return std::nullopt;
    return MadeText{std::move(text).finish(), isWhole};
}

std::string mergedWaypointText(const gps::Array& records, std::string_view present,
                               gps::LineAccount* lines)
{
    return mergedNamedText(records, namedLines(kWayPointLines, present, lines))->text;
}

std::optional<std::string> mergedGeocacheText(const gps::Array& records, std::string_view present,
                                              gps::LineAccount* lines)
{
    auto made = mergedNamedText(records, namedLines(kGeoCacheLines, present, lines));
    return made ? std::optional{std::move(made->text)} : std::nullopt;
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
