// SPDX-License-Identifier: MIT
// The texts are made with the same functions that write the records, and compared with the
// originals.

#include "SendRemarks.h"

#include "../codec/FieldText.h"
#include "../codec/SentenceFields.h"
#include "../codec/SymbolMap.h"
#include "../common/Lines.h"

#include <gps/Geocache.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileSystem.h>

#include <algorithm>
#include <set>
#include <utility>

#include <sys/stat.h>

namespace magellan {
namespace {

// Limits of the receivers: geocaches read from a file, and waypoints with comments.
constexpr std::size_t kMostGeocaches = 200;
constexpr std::size_t kMostComments = 200;

/// Appends sentences to a list, equal ones only once.
class Remarks {
public:
    explicit Remarks(std::vector<std::string>& out) : out_(out) {}

    void add(std::string remark)
    {
        if (added_.insert(remark).second)
            out_.push_back(std::move(remark));
    }

    void addChange(std::string_view kind, std::string_view key, const std::string& before,
                   const std::string& after)
    {
        add("The " + std::string{key} + " \"" + before + "\" of a " + std::string{kind} +
            " becomes \"" + after + "\".");
    }

private:
    std::vector<std::string>& out_;
    std::set<std::string> added_;
};

void remarkOnText(std::string_view kind, const gps::Dictionary& record, std::string_view key,
                  bool cut, Remarks& remarks)
{
    const auto* text = record.findString(key);
    const bool isKept = text == nullptr || (deviceCharacterSet().containsAll(*text) &&
                                            !(cut && text->size() > kLongestName));
    if (!isKept)
        remarks.addChange(kind, key, *text,
                          cut ? magellanStringFromDictionary(record, key, kLongestName)
                              : magellanStringFromDictionary(record, key));
}

/// A symbol without an icon is written as the crossed box. A short unknown symbol is written
/// unfiltered, as an icon code, so it may contain a "," or "*" that breaks the sentence.
void remarkOnSymbol(const gps::Dictionary& record, Remarks& remarks)
{
    const auto* symbol = record.findString("symbol");
    if (symbol == nullptr)
        return;
    const auto& map = SymbolMap::shared();
    const auto icon = map.magellanIconFromSymbolString(symbol);
    if (icon == kMagellanSymbol_crossed_box && !map.contains(*symbol) &&
        *symbol != kMagellanSymbol_crossed_box)
        remarks.add("The symbol \"" + *symbol + "\" has no icon and becomes \"" +
                    std::string{map.symbolStringFromMagellanIcon(icon)} + "\".");
    if (icon == *symbol && !deviceCharacterSet().containsAll(icon))
        remarks.add("The symbol \"" + *symbol +
                    "\" is written as it is and would damage its line: choose another one.");
}

bool canBeWritten(const gps::Dictionary& record)
{
    const auto* point = gps::findPoint(record);
    return point != nullptr && gps::NMEAUtils::hasNMEACoordinate(point->latitude, true) &&
           gps::NMEAUtils::hasNMEACoordinate(point->longitude, false);
}

void remarkOnPosition(std::string_view kind, const gps::Dictionary& record, Remarks& remarks)
{
    if (canBeWritten(record))
        return;
    const auto* name = record.findString("name");
    remarks.add("The " + std::string{kind} + " \"" + (name != nullptr ? *name : "") +
                "\" has no position that can be written.");
}

void remarkOnWaypoint(std::string_view kind, const gps::Dictionary& record, Remarks& remarks)
{
    if (record.findString("name") == nullptr) {
        remarks.add("A " + std::string{kind} + " without a name is skipped.");
        return;
    }
    remarkOnText(kind, record, "name", true, remarks);
    remarkOnText(kind, record, "comment", false, remarks);
    remarkOnSymbol(record, remarks);
    remarkOnPosition(kind, record, remarks);
}

void remarkOnGeocache(const gps::Dictionary& record, Remarks& remarks)
{
    if (!geocacheKey(record)) {
        remarks.add("A geocache without an identifier or a name is skipped.");
        return;
    }
    for (const auto key : gps::kGeocacheKeys)
        remarkOnText("geocache", record, key, false, remarks);
    remarkOnPosition("geocache", record, remarks);
}

void remarkOnRoute(const gps::Dictionary& record, Remarks& remarks)
{
    if (record.findString("name") == nullptr)
        remarks.add("A route without a name is skipped, except for its points.");
    remarkOnText("route", record, "name", true, remarks);
    remarkOnText("route", record, "comment", false, remarks);
    const auto* points = record.findArray("points");
    if (points == nullptr)
        return;
    for (const auto& element : *points) {
        if (const auto* point = element.as<gps::Dictionary>())
            remarkOnWaypoint("route point", *point, remarks);
    }
}

void remarkOnTrack(const gps::Dictionary& record, Remarks& remarks)
{
    std::size_t unwritable = 0;
    const auto* points = record.findArray("points");
    if (points == nullptr)
        return;
    for (const auto& element : *points) {
        const auto* point = element.as<gps::Dictionary>();
        unwritable += point == nullptr || !canBeWritten(*point) ? 1U : 0U;
    }
    if (unwritable > 0)
        remarks.add("A track loses " + std::to_string(unwritable) +
                    " points without a position that can be written.");
}

/// A remark on the points of one route.
std::string renamingRemark(const RenamedPoint* first, std::size_t count)
{
    constexpr std::size_t kMostNamed = 3;
    auto remark = count == 1 ? "1 point of the route \"" + first->route +
                                   "\" gets another name, because a different point has it"
                             : std::to_string(count) + " points of the route \"" + first->route +
                                   "\" get other names, because different points have theirs";
    for (std::size_t i = 0; i < std::min(count, kMostNamed); ++i)
        remark +=
            (i == 0 ? ": \"" : ", \"") + first[i].before + "\" becomes \"" + first[i].after + "\"";
    if (count > kMostNamed)
        remark += " and " + std::to_string(count - kMostNamed) + " more";
    return remark + ".";
}

std::size_t linesWithComments(std::string_view content)
{
    constexpr std::size_t kComment = 8;
    std::size_t count = 0;
    forEachLine(content, [&count](std::string_view line) {
        const SentenceFields fields{line};
        count += fields.count() > kComment && !fields.at(kComment).empty() ? 1U : 0U;
    });
    return count;
}

/// The closing sentence has no line end.
std::size_t recordsIn(std::string_view content)
{
    return static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n'));
}

} // namespace

void remarkOnRecords(const SendJob& job, std::vector<std::string>& remarks)
{
    Remarks gathered{remarks};
    for (const auto& element : job.records()) {
        const auto* record = element.as<gps::Dictionary>();
        if (record == nullptr)
            continue;
        switch (job.kind) {
        case RecordKind::kTracks:
            remarkOnTrack(*record, gathered);
            break;
        case RecordKind::kWaypoints:
            remarkOnWaypoint("waypoint", *record, gathered);
            break;
        case RecordKind::kGeocaches:
            remarkOnGeocache(*record, gathered);
            break;
        case RecordKind::kRoutes:
            remarkOnRoute(*record, gathered);
            break;
        }
    }
}

void remarkOnRenamedPoints(const std::vector<RenamedPoint>& renamed,
                           std::vector<std::string>& remarks)
{
    for (std::size_t begin = 0, end = 0; begin < renamed.size(); begin = end) {
        while (end < renamed.size() && renamed[end].route == renamed[begin].route)
            ++end;
        remarks.push_back(renamingRemark(&renamed[begin], end - begin));
    }
}

void remarkOnLink(const std::string& path, std::vector<std::string>& remarks)
{
    struct stat present;
    if (gps::FileSystem::system().lstat(path.c_str(), &present) == 0 && S_ISLNK(present.st_mode))
        remarks.push_back(path +
                          " is a link, and a file takes its place; what it leads to stays as "
                          "it is.");
}

void remarkOnFile(RecordKind kind, std::string_view path, std::string_view content,
                  std::vector<std::string>& remarks)
{
    const std::string file{path};
    if (kind == RecordKind::kGeocaches) {
        if (const auto count = recordsIn(content); count > kMostGeocaches)
            remarks.push_back(file + " would hold " + std::to_string(count) +
                              " geocaches; receivers read the first 200.");
    }
    if (kind == RecordKind::kWaypoints) {
        if (const auto count = linesWithComments(content); count > kMostComments)
            remarks.push_back(file + " would hold " + std::to_string(count) +
                              " waypoints with comments; receivers keep 200.");
    }
}

} // namespace magellan
