// SPDX-License-Identifier: MIT

#include "SendRemarks.h"

#include "../codec/FieldText.h"
#include "../codec/SentenceFields.h"
#include "../codec/SymbolMap.h"
#include "../common/Lines.h"
#include "DeviceFileWriters.h"

#include <gps/Geocache.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <set>

namespace magellan {
namespace {

/// Receivers read so many geocaches from a file, and keep so many waypoints with comments.
constexpr std::size_t kMostGeocaches = 200;
constexpr std::size_t kMostComments = 200;

/// Gathers sentences; one that would be said twice is said once.
class Remarks {
public:
    explicit Remarks(std::vector<std::string>& out) : out_(out) {}

    void say(std::string remark)
    {
        if (said_.insert(remark).second)
            out_.push_back(std::move(remark));
    }

    void changed(std::string_view kind, std::string_view key, const std::string& before,
                 const std::string& after)
    {
        if (before != after)
            say("The " + std::string{key} + " \"" + before + "\" of a " + std::string{kind} +
                " becomes \"" + after + "\".");
    }

private:
    std::vector<std::string>& out_;
    std::set<std::string> said_;
};

void remarkOnText(std::string_view kind, const gps::Dictionary& record, std::string_view key,
                  bool cut, Remarks& remarks)
{
    const auto* text = record.findString(key);
    if (text != nullptr)
        remarks.changed(kind, key, *text,
                        cut ? magellanStringFromDictionary(record, key, kLongestName)
                            : magellanStringFromDictionary(record, key));
}

bool hasOnlyDeviceCharacters(std::string_view text)
{
    return gps::stringByRemovingCharactersNotInSet(text, deviceCharacterSet()) == text;
}

/// A symbol without an icon is written as the crossed box; an icon code stands for itself, whatever
/// its characters.
void remarkOnSymbol(const gps::Dictionary& record, Remarks& remarks)
{
    const auto* symbol = record.findString("symbol");
    if (symbol == nullptr)
        return;
    const auto& map = SymbolMap::shared();
    const auto icon = map.magellanIconFromSymbolString(symbol);
    if (icon == kMagellanSymbol_crossed_box && !map.contains(*symbol) &&
        *symbol != kMagellanSymbol_crossed_box)
        remarks.say("The symbol \"" + *symbol + "\" has no icon and becomes \"" +
                    std::string{map.symbolStringFromMagellanIcon(icon)} + "\".");
    if (icon == *symbol && !hasOnlyDeviceCharacters(icon))
        remarks.say("The symbol \"" + *symbol +
                    "\" is written as it is and spoils its sentence: choose another one.");
}

bool canBeWritten(const gps::Dictionary& record)
{
    const auto* point = gps::findPoint(record);
    return point != nullptr &&
           gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point->latitude, true) &&
           gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point->longitude, false);
}

void remarkOnPlace(std::string_view kind, const gps::Dictionary& record, Remarks& remarks)
{
    if (canBeWritten(record))
        return;
    const auto* name = record.findString("name");
    remarks.say("The " + std::string{kind} + " \"" + (name != nullptr ? *name : "") +
                "\" has no place that can be written.");
}

void remarkOnWaypoint(std::string_view kind, const gps::Dictionary& record, Remarks& remarks)
{
    if (record.findString("name") == nullptr) {
        remarks.say("A " + std::string{kind} + " without a name is left out.");
        return;
    }
    remarkOnText(kind, record, "name", true, remarks);
    remarkOnText(kind, record, "comment", false, remarks);
    remarkOnSymbol(record, remarks);
    remarkOnPlace(kind, record, remarks);
}

void remarkOnGeocache(const gps::Dictionary& record, Remarks& remarks)
{
    if (!geocacheKey(record)) {
        remarks.say("A geocache without an identifier or a name is left out.");
        return;
    }
    for (const auto key : gps::kGeocacheKeys)
        remarkOnText("geocache", record, key, false, remarks);
    remarkOnPlace("geocache", record, remarks);
}

void remarkOnRoute(const gps::Dictionary& record, Remarks& remarks)
{
    if (record.findString("name") == nullptr)
        remarks.say("A route without a name is left out, but for its points.");
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
        remarks.say("A track loses " + std::to_string(unwritable) +
                    " points without a place that can be written.");
}

std::size_t linesWithComments(std::string_view content)
{
    constexpr std::size_t kComment = 8;
    std::size_t count = 0;
    forEachLine(content, [&count](std::string_view line) {
        const auto fields = SentenceFields::ofSentence(line, "PMGNWPL");
        count += fields && fields->count() > kComment && !fields->at(kComment).empty() ? 1U : 0U;
    });
    return count;
}

std::size_t geocachesIn(std::string_view content)
{
    std::size_t count = 0;
    forEachLine(content, [&count](std::string_view line) {
        count += SentenceFields::ofSentence(line, "PMGNGEO") ? 1U : 0U;
    });
    return count;
}

} // namespace

void remarkOnRecords(const SendJob& job, std::vector<std::string>& remarks)
{
    Remarks gathered{remarks};
    for (const auto& element : job.records) {
        const auto* record = element.as<gps::Dictionary>();
        if (record == nullptr)
            continue;
        switch (job.kind) {
        case SendKind::kTracks:
            remarkOnTrack(*record, gathered);
            break;
        case SendKind::kWaypoints:
            remarkOnWaypoint("waypoint", *record, gathered);
            break;
        case SendKind::kGeocaches:
            remarkOnGeocache(*record, gathered);
            break;
        case SendKind::kRoutes:
            remarkOnRoute(*record, gathered);
            break;
        }
    }
}

void remarkOnFile(SendKind kind, std::string_view path, std::string_view content,
                  std::vector<std::string>& remarks)
{
    const std::string file{path};
    if (kind == SendKind::kGeocaches) {
        if (const auto count = geocachesIn(content); count > kMostGeocaches)
            remarks.push_back(file + " would hold " + std::to_string(count) +
                              " geocaches; receivers read the first 200.");
    }
    if (kind == SendKind::kWaypoints) {
        if (const auto count = linesWithComments(content); count > kMostComments)
            remarks.push_back(file + " would hold " + std::to_string(count) +
                              " waypoints with comments; receivers keep 200.");
    }
}

} // namespace magellan
