// SPDX-License-Identifier: MIT
// A record has one comment: <cmt>, or else <desc>. The type of a waypoint is kept if it is one of a
// geocache. GPX 1.0 has links as <url>.

#include "host/formats/UnstoredTexts.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/formats/XmlNodes.h"

#include <gps/Geocache.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>

namespace host {
namespace {

constexpr std::array<std::string_view, 6> kNounTexts{"waypoint",    "geocache", "route",
                                                     "route point", "track",    "track point"};
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

template <std::size_t kCount>
bool contains(const std::array<std::string_view, kCount>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// What a record keeps, or what is not a value of its own. The cache extension is read in part.
constexpr std::array<std::string_view, 11> kKept{"name",   "ele",   "time", "sym",  "rtept", "cmt",
                                                 "trkseg", "cache", "desc", "link", "url"};

bool isOther(const pugi::xml_node& node, std::string_view name)
{
    if (name == "extensions")
        return node.first_child() && !childOf(node, "cache");
    return node.type() == pugi::node_element && name != "urlname" && !contains(kKept, name);
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
    std::vector<std::string> parts;
    for (std::size_t noun = 0; noun < kNouns; ++noun) {
        for (std::size_t field = 0; field < kFields; ++field) {
            const auto count = lost_[noun][field];
            const auto* const plural = count == 1 && field != kOthers ? "" : "s";
            if (count > 0)
                parts.push_back(fmt::format("the {}{} of {} {}{}", kFieldTexts[field], plural,
                                            count, kNounTexts[noun], count == 1 ? "" : "s"));
        }
    }
    return joined(parts, ", ");
}

} // namespace host
