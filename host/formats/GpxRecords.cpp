// SPDX-License-Identifier: MIT
// GPX from any maker is accepted, so names are compared without their prefixes, and a field is
// looked for in each element that some maker is known to put it in.

#include "host/formats/GpxRecords.h"

#include "host/base/XmlText.h"
#include "host/formats/GpxTime.h"
#include "host/formats/RecordOrigin.h"
#include "host/formats/XmlNodes.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kCacheTypePrefix = "Geocache|";
constexpr std::size_t kUsualKeys = 4;  // in a record
constexpr int kMostDeclarations = 256; // of namespaces; files have about ten

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
    const auto prefix = elementName(element).prefix;
    const auto key = prefix.empty() ? std::string{"xmlns"} : "xmlns:" + std::string{prefix};
    for (auto node = element; node; node = node.parent()) {
        if (const auto declared = declarationIn(node, key))
            return declared.value();
    }
    return {};
}

enum Field : std::size_t {
    kElevation,
    kTime,
    kName,
    kComment,
    kDescription,
    kSymbol,
    kType,
    kCache,
    kExtensions,
    kFieldCount
};

constexpr std::array<std::string_view, kFieldCount> kFieldNames{
    "ele", "time", "name", "cmt", "desc", "sym", "type", "cache", "extensions"};

// The fields of a point, found in one walk over its children. Each is what childOf() returns.
class Fields {
public:
    explicit Fields(const pugi::xml_node& parent)
    {
        const auto own = elementName(parent).prefix;
        for (auto node = parent.first_child(); node; node = node.next_sibling())
            add(node, own);
    }

    [[nodiscard]] const pugi::xml_node& operator[](Field field) const { return found_[field]; }
    [[nodiscard]] std::string text(Field field) const { return textOf(found_[field]); }

private:
    void add(const pugi::xml_node& node, std::string_view own)
    {
        ElementName name{{}, node.name()};
        const auto find = [&name] {
            return std::find(kFieldNames.begin(), kFieldNames.end(), name.local);
        };
        const auto* known = find();
        if (known == kFieldNames.end()) {
            name = elementName(node);
            known = find();
        }
        if (known == kFieldNames.end())
            return;
        auto& found = found_[static_cast<std::size_t>(known - kFieldNames.begin())];
        if (!found || (name.prefix == own && elementName(found).prefix != own))
            found = node;
    }

    std::array<pugi::xml_node, kFieldCount> found_;
};

std::string commentOf(const Fields& fields)
{
    auto comment = fields.text(kComment);
    return comment.empty() ? fields.text(kDescription) : comment;
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
pugi::xml_node cacheOf(const Fields& waypoint)
{
    return waypoint[kCache] ? waypoint[kCache] : childOf(waypoint[kExtensions], "cache");
}

bool isGeocache(const Fields& waypoint)
{
    return cacheOf(waypoint) || waypoint.text(kType).starts_with(gps::kGeocacheSymbol) ||
           waypoint.text(kSymbol).starts_with(gps::kGeocacheSymbol);
}

std::string cacheTypeOf(const Fields& waypoint)
{
    auto type = childText(cacheOf(waypoint), "type");
    if (!type.empty())
        return type;
    type = waypoint.text(kType);
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
std::string datePlacedOf(const Fields& waypoint, const gps::GPSPoint& point)
{
    auto published = loggedDate(cacheOf(waypoint), "Publish Listing");
    return published.empty() ? gps::NMEAUtils::makeNMEADateFrom(point.time).date : published;
}

gps::Dictionary plainRecord(const Fields& fields, const gps::GPSPoint& point)
{
    gps::Dictionary record;
    record.reserve(kUsualKeys);
    setUnlessEmpty(record, "name", fields.text(kName));
    record.set("comment", commentOf(fields));
    setUnlessEmpty(record, "symbol", fields.text(kSymbol));
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

gps::Dictionary geocacheRecord(const Fields& fields, const gps::GPSPoint& point)
{
    const auto cache = cacheOf(fields);
    // Not by its logs: they are everybody's.
    const bool isFound = fields.text(kSymbol) == gps::kFoundGeocacheSymbol;
    auto record = plainRecord(fields, point);
    keepTitle(record, childText(cache, "name"));
    record.set("geocacheOwner", childText(cache, "owner"));
    record.set("geocacheHint", childText(cache, "encoded_hints"));
    record.set("geocacheType", cacheTypeOf(fields));
    record.set("datePlaced", datePlacedOf(fields, point));
    record.set("dateFound", isFound ? foundDateOf(cache) : std::string{});
    record.set("difficulty", childText(cache, "difficulty"));
    record.set("terrain", childText(cache, "terrain"));
    record.set("symbol", isFound ? gps::kFoundGeocacheSymbol : gps::kGeocacheSymbol);
    return record;
}

} // namespace

bool isOwn(const pugi::xml_node& element, std::string_view local)
{
    const auto name = elementName(element);
    if (name.local != local)
        return false;
    if (name.prefix == elementName(element.parent()).prefix)
        return true;
    const auto space = namespaceOf(element); // empty if its maker forgot to declare it
    return space.empty() || space == namespaceOf(element.parent());
}

bool readPoint(const pugi::xml_node& element, gps::GPSPoint& point, UnreadTexts& unread)
{
    const Fields fields{element};
    std::string elevation;
    std::string time;
    return makePoint({.latitude = element.attribute("lat").value(),
                      .longitude = element.attribute("lon").value(),
                      .elevation = textOf(fields[kElevation], elevation),
                      .time = textOf(fields[kTime], time)},
                     point, unread);
}

bool makePoint(const PointTexts& texts, gps::GPSPoint& point, UnreadTexts& unread)
{
    const auto latitude = coordinateOf(texts.latitude);
    const auto longitude = coordinateOf(texts.longitude);
    if (!latitude || !longitude)
        return false;
    point.latitude = *latitude;
    point.longitude = *longitude;
    point.altitude = elevationIn(texts.elevation, unread);
    point.time = timeIn(texts.time, unread);
    return isOnGlobe(point);
}

gps::Dictionary trackPointRecord(const gps::GPSPoint& point)
{
    gps::Dictionary record;
    record.reserve(1);
    record.set(gps::kPointKey, point);
    return record;
}

gps::Dictionary waypointRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    const Fields fields{element};
    return isGeocache(fields) ? geocacheRecord(fields, point) : plainRecord(fields, point);
}

gps::Dictionary routePointRecord(const pugi::xml_node& element, const gps::GPSPoint& point)
{
    return plainRecord(Fields{element}, point);
}

gps::Dictionary routeRecord(const pugi::xml_node& element)
{
    const Fields fields{element};
    gps::Dictionary route;
    setUnlessEmpty(route, "name", fields.text(kName));
    setUnlessEmpty(route, "comment", commentOf(fields));
    // leadingInt32() returns 0 for a text without a number, which would become route 0.
    if (const auto number = childText(element, "number"); gps::leadingNumber(number))
        route.set("number", gps::leadingInt32(number));
    setUnlessEmpty(route, kSourceKey, childText(element, "src"));
    return route;
}

gps::Dictionary trackRecord(const pugi::xml_node& element)
{
    const Fields fields{element};
    gps::Dictionary track;
    setUnlessEmpty(track, "name", fields.text(kName));
    setUnlessEmpty(track, "comment", commentOf(fields));
    setUnlessEmpty(track, kSourceKey, childText(element, "src"));
    return track;
}

} // namespace host
