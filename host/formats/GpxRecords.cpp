// SPDX-License-Identifier: MIT
// GPX from any maker is accepted, so names are compared without their prefixes, and a field is
// looked for in each element that some maker is known to put it in.

#include "host/formats/GpxRecords.h"

#include "host/base/XmlText.h"
#include "host/formats/GpxTime.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <pugixml.hpp>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kCacheTypePrefix = "Geocache|";
constexpr std::size_t kUsualKeys = 4;  // in a record
constexpr int kMostDeclarations = 256; // of namespaces; files have about ten

struct ElementName {
    std::string_view prefix; // without its colon; empty for the default namespace
    std::string_view local;
};

ElementName nameOf(const pugi::xml_node& node)
{
    const std::string_view name = node.name();
    const auto colon = name.find(':');
    if (colon == std::string_view::npos)
        return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

// Looks at the first kMostDeclarations attributes only. An element with very many would be searched
// again for each element below it, in a time that grows with the square of the file.
pugi::xml_attribute declarationIn(const pugi::xml_node& element, const std::string& key)
{
    int left = kMostDeclarations;
    for (const auto& attribute : element.attributes()) {
        if (left-- == 0)
            break;
        if (key == attribute.name())
            return attribute;
    }
    return {};
}

// The namespace of an element; empty if its prefix is not declared.
std::string_view namespaceOf(const pugi::xml_node& element)
{
    const auto prefix = nameOf(element).prefix;
    const auto key = prefix.empty() ? std::string{"xmlns"} : "xmlns:" + std::string{prefix};
    for (auto node = element; node; node = node.parent()) {
        if (const auto declared = declarationIn(node, key))
            return declared.value();
    }
    return {};
}

// The first child of that local name, preferably one in the parent's own namespace. Compares
// prefixes, not namespaces: this runs for each field of each point, and finding a namespace means
// walking up to the root.
pugi::xml_node childOf(const pugi::xml_node& parent, std::string_view local)
{
    pugi::xml_node found;
    for (const auto& node : parent.children()) {
        const auto name = nameOf(node);
        if (name.local != local)
            continue;
        if (name.prefix == nameOf(parent).prefix)
            return node;
        if (!found)
            found = node;
    }
    return found;
}

// An element's own text. White space around a text of several lines is layout and is dropped.
std::string textOf(const pugi::xml_node& element)
{
    std::string text = element.value(); // the first piece, unless it is a CDATA section
    for (const auto& piece : element.children()) {
        if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata)
            text += piece.value();
    }
    if (text.find('\n') == std::string::npos)
        return text;
    return std::string{gps::trimmed(text)};
}

std::string childText(const pugi::xml_node& parent, std::string_view local)
{
    return textOf(childOf(parent, local));
}

std::string commentOf(const pugi::xml_node& element)
{
    auto comment = childText(element, "cmt");
    return comment.empty() ? childText(element, "desc") : comment;
}

void setUnlessEmpty(gps::Dictionary& record, std::string_view key, std::string text)
{
    if (!text.empty())
        record.set(key, std::move(text));
}

// Accepts the whole text or nothing: "47.1x" read as 47.1 could be another position.
std::optional<double> coordinateOf(std::string_view text)
{
    return gps::wholeNumber(gps::trimmed(text));
}

// The cache extension is a child of the element in GPX 1.0, and of its <extensions> in GPX 1.1.
pugi::xml_node cacheOf(const pugi::xml_node& waypoint)
{
    const auto cache = childOf(waypoint, "cache");
    return cache ? cache : childOf(childOf(waypoint, "extensions"), "cache");
}

bool isGeocache(const pugi::xml_node& waypoint)
{
    return cacheOf(waypoint) || childText(waypoint, "type").starts_with(gps::kGeocacheSymbol) ||
           childText(waypoint, "sym").starts_with(gps::kGeocacheSymbol);
}

std::string cacheTypeOf(const pugi::xml_node& waypoint)
{
    auto type = childText(cacheOf(waypoint), "type");
    if (!type.empty())
        return type;
    type = childText(waypoint, "type");
    return type.starts_with(kCacheTypePrefix) ? type.substr(kCacheTypePrefix.size())
                                              : std::string{};
}

// A text that is not a timestamp is kept: it may be a date as some receiver writes it.
std::string cacheDateOf(const std::string& text)
{
    const auto time = readGpxTime(text);
    return time ? gps::NMEAUtils::makeNMEADateFrom(*time).date : text;
}

// The date of the first log of a type. Logs are sorted by date, the latest first.
std::string loggedDate(const pugi::xml_node& cache, std::string_view type)
{
    for (const auto& log : childOf(cache, "logs").children()) {
        if (childText(log, "type") == type)
            return cacheDateOf(childText(log, "date"));
    }
    return {};
}

// The date on which the owner of the file found a cache that is marked as found. Sites name the
// finder in each log, and logs are everybody's. A log without a finder was written by this program;
// the only log of a cache that its finder has logged is the finder's.
std::string foundDateOf(const pugi::xml_node& cache)
{
    int logs = 0;
    pugi::xml_node found;
    for (const auto& log : childOf(cache, "logs").children()) {
        const auto type = childText(log, "type");
        if (type == "Publish Listing")
            continue;
        ++logs;
        if (type != "Found it")
            continue;
        if (!childOf(log, "finder"))
            return cacheDateOf(childText(log, "date"));
        found = log;
    }
    return logs == 1 && found ? cacheDateOf(childText(found, "date")) : std::string{};
}

// Listing sites write the day on which a cache was placed as its waypoint's time.
std::string datePlacedOf(const pugi::xml_node& waypoint, const gps::GPSPoint& point)
{
    auto published = loggedDate(cacheOf(waypoint), "Publish Listing");
    return published.empty() ? gps::NMEAUtils::makeNMEADateFrom(point.time).date : published;
}

gps::Dictionary plainRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    gps::Dictionary record;
    record.reserve(kUsualKeys);
    setUnlessEmpty(record, "name", childText(element, "name"));
    record.set("comment", commentOf(element));
    setUnlessEmpty(record, "symbol", childText(element, "sym"));
    record.set(gps::kPointKey, point);
    return record;
}

// The waypoint's name is usually a code. The cache's own name takes the first of name and comment
// that is free. Precondition: the record has a comment, which may be empty.
void keepTitle(gps::Dictionary& record, const std::string& title)
{
    const auto* const name = record.findString("name");
    if (name == nullptr)
        setUnlessEmpty(record, "name", title);
    else if (record.findString("comment")->empty() && title != *name)
        record.set("comment", title);
}

gps::Dictionary geocacheRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    const auto cache = cacheOf(element);
    // Not by its logs: they are everybody's.
    const bool isFound = childText(element, "sym") == gps::kFoundGeocacheSymbol;
    auto record = plainRecord(element, point);
    keepTitle(record, childText(cache, "name"));
    record.set("geocacheOwner", childText(cache, "owner"));
    record.set("geocacheHint", childText(cache, "encoded_hints"));
    record.set("geocacheType", cacheTypeOf(element));
    record.set("datePlaced", datePlacedOf(element, point));
    record.set("dateFound", isFound ? foundDateOf(cache) : std::string{});
    record.set("difficulty", childText(cache, "difficulty"));
    record.set("terrain", childText(cache, "terrain"));
    record.set("symbol", isFound ? gps::kFoundGeocacheSymbol : gps::kGeocacheSymbol);
    return record;
}

} // namespace

std::string_view localName(const pugi::xml_node& element)
{
    return nameOf(element).local;
}

bool isOwn(const pugi::xml_node& element, std::string_view local)
{
    const auto name = nameOf(element);
    if (name.local != local)
        return false;
    if (name.prefix == nameOf(element.parent()).prefix)
        return true;
    const auto space = namespaceOf(element); // empty if its maker forgot to declare it
    return space.empty() || space == namespaceOf(element.parent());
}

bool readPoint(const pugi::xml_node& element, gps::GPSPoint& point)
{
    const auto latitude = coordinateOf(element.attribute("lat").value());
    const auto longitude = coordinateOf(element.attribute("lon").value());
    if (!latitude || !longitude)
        return false;
    point.latitude = *latitude;
    point.longitude = *longitude;
    point.altitude = gps::leadingNumber(childText(element, "ele"))
                         .value_or(std::numeric_limits<double>::quiet_NaN());
    point.time = readGpxTime(childText(element, "time")).value_or(0);
    return isOnGlobe(point);
}

gps::Dictionary waypointRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    return isGeocache(element) ? geocacheRecord(element, point) : plainRecord(element, point);
}

gps::Dictionary routePointRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    return plainRecord(element, point);
}

gps::Dictionary routeRecord(const pugi::xml_node& element)
{
    gps::Dictionary route;
    setUnlessEmpty(route, "name", childText(element, "name"));
    setUnlessEmpty(route, "comment", commentOf(element));
    // leadingInt32() returns 0 for a text without a number, which would become route 0.
    if (const auto number = childText(element, "number"); gps::leadingNumber(number))
        route.set("number", gps::leadingInt32(number));
    return route;
}

gps::Dictionary trackRecord(const pugi::xml_node& element)
{
    gps::Dictionary track;
    setUnlessEmpty(track, "name", childText(element, "name"));
    return track;
}

} // namespace host
