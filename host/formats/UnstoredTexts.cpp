// SPDX-License-Identifier: MIT
// A record has one comment: <cmt>, or else <desc>. The type of a waypoint is kept if it is one of a
// geocache. GPX 1.0 has links as <url>.

#include "host/formats/UnstoredTexts.h"

#include "host/base/RecordText.h"
#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/formats/PointValues.h"
#include "host/formats/XmlNodes.h"

#include <gps/Geocache.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace host {
namespace {

constexpr std::array<std::string_view, 7> kNounTexts{
    "waypoint", "geocache", "route", "route point", "track", "track segment", "track point"};
constexpr std::array<std::string_view, 9> kFieldTexts{
    "comment", "description", "link", "type", "number", "source", "other value", "time", "found"};

bool hasText(const pugi::xml_node& node)
{
    return *node.child_value() != '\0';
}

// A link is an attribute in GPX 1.1, and a text in GPX 1.0.
bool isLink(const pugi::xml_node& node, std::string_view name)
{
    return (name == "link" && *node.attribute("href").value() != '\0') ||
           (name == "url" && hasText(node));
}

// What a record keeps, or what is not a value of its own. The cache extension is read in part.
constexpr std::array<std::string_view, 11> kKept{"name",   "ele",   "time", "sym",  "rtept", "cmt",
                                                 "trkseg", "cache", "desc", "link", "url"};

// Of the cache extension.
constexpr std::array<std::string_view, 7> kKeptOfCache{
    "name", "owner", "type", "difficulty", "terrain", "encoded_hints", "logs"};

bool hasContent(const pugi::xml_node& node)
{
    return node.first_child() || *node.value() != '\0' || node.first_attribute();
}

bool isLog(const pugi::xml_node& node)
{
    return localName(node) == "log" && hasText(childOf(node, "text"));
}

bool hasOthers(const pugi::xml_node& cache)
{
    const auto nodes = cache.children();
    return std::any_of(nodes.begin(), nodes.end(), [](const pugi::xml_node& node) {
        const auto name = localName(node);
        if (name == "logs")
            return std::any_of(node.begin(), node.end(), isLog);
        return node.type() == pugi::node_element && !isOneOf(name, kKeptOfCache) &&
               hasContent(node);
    });
}

bool isOther(const pugi::xml_node& node, std::string_view name)
{
    if (name == "cache")
        return hasOthers(node);
    if (name == "extensions") {
        const auto nodes = node.children();
        return std::any_of(nodes.begin(), nodes.end(), [](const pugi::xml_node& extension) {
            return localName(extension) != "cache" || hasOthers(extension);
        });
    }
    return node.type() == pugi::node_element && name != "urlname" && !isOneOf(name, kKept);
}

// What a file has for itself. The last is anything else.
constexpr std::array kFileTexts{marked("name"),        marked("description"), marked("author"),
                                marked("keywords"),    marked("copyright"),   marked("link"),
                                marked("other values")};

struct FileElement {
    std::string_view name;
    std::size_t field; // in kFileTexts
};

// GPX 1.0 has the author and the link in two elements each.
constexpr std::array kFileElements{
    FileElement{"name", 0},  FileElement{"desc", 1},     FileElement{"author", 2},
    FileElement{"email", 2}, FileElement{"keywords", 3}, FileElement{"copyright", 4},
    FileElement{"link", 5},  FileElement{"url", 5},      FileElement{"urlname", 5}};

// This program describes its own files by what their records have as their source.
bool isOwnDescription(const pugi::xml_node& element)
{
    return localName(element) == "desc" &&
           std::string_view{element.root().first_child().attribute("creator").value()} ==
               "magellangps";
}

} // namespace

void UnstoredTexts::addWaypoint(const pugi::xml_node& element, bool isGeocache)
{
    add(element, isGeocache ? kGeocacheTexts : kWaypointTexts);
}

// Both dates are texts of the record, which are empty if the reader could not make them.
void UnstoredTexts::addDatesOf(const gps::Dictionary& geocache, const gps::GPSPoint& point)
{
    auto& counts = unstored_[kGeocacheTexts];
    counts[kTimes] += point.time != 0 && textIn(geocache, "datePlaced").empty() ? 1U : 0U;
    const bool isFound = textIn(geocache, "symbol") == gps::kFoundGeocacheSymbol;
    counts[kFound] += isFound && textIn(geocache, "dateFound").empty() ? 1U : 0U;
}

void UnstoredTexts::addRoute(const pugi::xml_node& element)
{
    add(element, kRouteTexts);
}

void UnstoredTexts::addRoutePoint(const pugi::xml_node& element)
{
    add(element, kRoutePointTexts);
}

void UnstoredTexts::addTrack(const pugi::xml_node& element)
{
    add(element, kTrackTexts);
}

void UnstoredTexts::addTrackPoint(const pugi::xml_node& element)
{
    for (const auto& node : element.children()) {
        const auto name = localName(node);
        if (name == "ele" || name == "time" || node.type() != pugi::node_element)
            continue;
        ++lost_[kTrackPointTexts][kOthers];
        return;
    }
}

void UnstoredTexts::addOfFile(const pugi::xml_node& element)
{
    if (localName(element) != "metadata")
        return addFileValue(element);
    for (const auto& node : element.children())
        addFileValue(node);
}

void UnstoredTexts::addFileValue(const pugi::xml_node& element)
{
    const auto name = localName(element);
    if (element.type() != pugi::node_element || !hasContent(element) || name == "time" ||
        name == "bounds" || isOwnDescription(element))
        return;
    const auto* const known =
        std::find_if(kFileElements.begin(), kFileElements.end(),
                     [&](const FileElement& file) { return file.name == name; });
    ofFile_[known != kFileElements.end() ? known->field : kFileFields - 1] = true;
}

// One walk over the children, which are few: this runs for each waypoint.
void UnstoredTexts::add(const pugi::xml_node& element, Noun noun)
{
    pugi::xml_node comment; // null unless it has a text
    pugi::xml_node description;
    std::array<bool, kFields> has{};
    for (const auto& node : element.children()) {
        const auto name = localName(node);
        if (name == "cmt" && hasText(node))
            comment = node;
        else if (name == "desc" && hasText(node))
            description = node;
        else if (name == "type")
            has[kTypes] = has[kTypes] || (hasText(node) && noun != kGeocacheTexts);
        else if (name == "src")
            has[kSources] = noun != kRouteTexts && noun != kTrackTexts && hasText(node);
        else if (name == "number")
            has[kNumbers] = hasText(node);
        else if (isLink(node, name))
            has[kLinks] = true;
        else
            has[kOthers] = has[kOthers] || isOther(node, name);
    }
    has[kDescriptions] = comment && description && textOf(comment) != textOf(description);
    for (std::size_t field = 0; field < kFields; ++field)
        lost_[noun][field] += has[field] ? 1U : 0U;
    if (noun == kTrackTexts) { // stores neither of the two texts, and all others one
        has[kComments] = !comment.empty();
        has[kDescriptions] = !description.empty();
    }
    for (std::size_t field = 0; field < kTextFields; ++field)
        unstored_[noun][field] += has[field] ? 1U : 0U;
}

void UnstoredTexts::addTo(std::vector<UnstoredText>& unstored) const
{
    for (std::size_t noun = 0; noun < kNouns; ++noun) {
        for (std::size_t field = 0; field < kFields; ++field) {
            const auto count = unstored_[noun][field];
            if (count == 0)
                continue;
            const auto known =
                std::find_if(unstored.begin(), unstored.end(), [&](const UnstoredText& text) {
                    return text.noun == kNounTexts[noun] && text.field == kFieldTexts[field];
                });
            if (known != unstored.end())
                known->records += count;
            else
                unstored.push_back({kNounTexts[noun], kFieldTexts[field], count});
        }
    }
}

std::string UnstoredTexts::lostText() const
{
    return lostText(0);
}

std::string UnstoredTexts::unsentText() const
{
    return lostText(kTextFields);
}

// "the name, link and other values of the file"
std::string UnstoredTexts::fileText() const
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kFileFields; ++i) {
        if (ofFile_[i])
            names.emplace_back(tr(kFileTexts[i]));
    }
    if (names.empty())
        return {};
    auto list = std::move(names.back());
    names.pop_back();
    if (!names.empty())
        list = trFormat("{} and {}", joined(names, ", "), list);
    return trFormat("the {} of the file", list);
}

std::string UnstoredTexts::lostText(std::size_t firstField) const
{
    std::vector<std::string> parts;
    if (auto text = fileText(); !text.empty())
        parts.push_back(std::move(text));
    for (std::size_t noun = 0; noun < kNouns; ++noun) {
        for (std::size_t field = firstField; field < kFields; ++field) {
            const auto count = lost_[noun][field];
            if (count > 0)
                parts.push_back(
                    trFormat("the {} of {}", fieldText(kFieldTexts[field], count),
                             countText(kNounTexts[noun], count, fmt::to_string(count))));
        }
    }
    if (fractions_ > 0)
        parts.push_back(fractionsText(fractions_));
    return joined(parts, ", ");
}

} // namespace host
