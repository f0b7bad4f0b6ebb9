// SPDX-License-Identifier: MIT
// A record has one comment: <cmt>, or else <desc>. The type of a waypoint is kept if it is one of a
// geocache. GPX 1.0 has links as <url>.

#include "host/formats/UnstoredTexts.h"

#include "host/formats/XmlNodes.h"

#include <pugixml.hpp>

#include <algorithm>

namespace host {
namespace {

constexpr std::array<std::string_view, 5> kNounTexts{"waypoint", "geocache", "route", "route point",
                                                     "track"};
constexpr std::array<std::string_view, 4> kFieldTexts{"comment", "description", "link", "type"};

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

} // namespace

void UnstoredTexts::addWaypoint(const pugi::xml_node& element, bool isGeocache)
{
    add(element, isGeocache ? kGeocacheTexts : kWaypointTexts);
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

// One walk over the children, which are few: this runs for each waypoint.
void UnstoredTexts::add(const pugi::xml_node& element, Noun noun)
{
    pugi::xml_node comment; // null unless it has a text
    pugi::xml_node description;
    bool hasLink = false;
    bool hasType = false;
    for (const auto& node : element.children()) {
        const auto name = localName(node);
        if (name == "cmt" && hasText(node))
            comment = node;
        else if (name == "desc" && hasText(node))
            description = node;
        else if (name == "type")
            hasType = hasType || hasText(node);
        else
            hasLink = hasLink || isLink(node, name);
    }
    auto& counts = counts_[noun];
    if (noun == kTrackTexts) { // stores neither of the two texts, and all others one
        counts[kComments] += comment ? 1U : 0U;
        counts[kDescriptions] += description ? 1U : 0U;
    } else if (comment && description) {
        counts[kDescriptions] += textOf(comment) != textOf(description) ? 1U : 0U;
    }
    counts[kLinks] += hasLink ? 1U : 0U;
    counts[kTypes] += hasType && noun != kGeocacheTexts ? 1U : 0U;
}

void UnstoredTexts::addTo(std::vector<UnstoredText>& unstored) const
{
    for (std::size_t noun = 0; noun < kNouns; ++noun) {
        for (std::size_t field = 0; field < kFields; ++field) {
            const auto count = counts_[noun][field];
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

} // namespace host
