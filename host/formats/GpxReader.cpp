// SPDX-License-Identifier: MIT
// Loads the whole document, since a send needs all of it at once, and reports the first fault with
// its line. Nothing is added to the caller's data before the whole file has proved good.

#include "host/formats/GpxReader.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/GpxRecords.h"

#include <gps/Value.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace host {
namespace {

// The records of a document.
class Collection {
public:
    // Stops at the first point without valid coordinates. @return  whether there was none
    bool read(const pugi::xml_node& gpx);

    // The element at which `read` stopped.
    [[nodiscard]] const pugi::xml_node& invalidPoint() const { return invalidPoint_; }

    void moveInto(gps::Dictionary& data);

private:
    bool readElement(const pugi::xml_node& element);
    bool readWaypoint(const pugi::xml_node& element);
    bool readRoute(const pugi::xml_node& element);
    bool readTrack(const pugi::xml_node& element);
    bool readPointOf(const pugi::xml_node& element, gps::GPSPoint& point);

    gps::Array waypoints_;
    gps::Array routes_;
    gps::Array tracks_;
    pugi::xml_node invalidPoint_;
};

bool Collection::read(const pugi::xml_node& gpx)
{
    const auto elements = gpx.children();
    return std::all_of(elements.begin(), elements.end(),
                       [this](const pugi::xml_node& element) { return readElement(element); });
}

bool Collection::readElement(const pugi::xml_node& element)
{
    if (isOwn(element, "wpt"))
        return readWaypoint(element);
    if (isOwn(element, "rte"))
        return readRoute(element);
    return !isOwn(element, "trk") || readTrack(element);
}

bool Collection::readWaypoint(const pugi::xml_node& element)
{
    gps::GPSPoint point;
    if (!readPointOf(element, point))
        return false;
    waypoints_.emplace_back(waypointRecord(element, point));
    return true;
}

bool Collection::readRoute(const pugi::xml_node& element)
{
    auto route = routeRecord(element);
    gps::Array points;
    for (const auto& node : element.children()) {
        gps::GPSPoint point;
        if (!isOwn(node, "rtept"))
            continue;
        if (!readPointOf(node, point))
            return false;
        points.emplace_back(routePointRecord(node, point));
    }
    route.set("points", std::move(points));
    routes_.emplace_back(std::move(route));
    return true;
}

bool Collection::readTrack(const pugi::xml_node& element)
{
    auto track = trackRecord(element);
    gps::Array points;
    for (const auto& segment : element.children()) {
        if (!isOwn(segment, "trkseg"))
            continue;
        for (const auto& node : segment.children()) {
            gps::GPSPoint point;
            if (!isOwn(node, "trkpt"))
                continue;
            if (!readPointOf(node, point))
                return false;
            points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
        }
    }
    track.set("points", std::move(points));
    tracks_.emplace_back(std::move(track));
    return true;
}

bool Collection::readPointOf(const pugi::xml_node& element, gps::GPSPoint& point)
{
    if (readPoint(element, point))
        return true;
    invalidPoint_ = element;
    return false;
}

void append(gps::Dictionary& data, std::string_view key, gps::Array& records)
{
    if (records.empty())
        return;
    if (auto* const list = data.findArray(key))
        list->insert(list->end(), std::make_move_iterator(records.begin()),
                     std::make_move_iterator(records.end()));
    else
        data.set(key, std::move(records));
}

void Collection::moveInto(gps::Dictionary& data)
{
    append(data, "waypoint", waypoints_);
    append(data, "route", routes_);
    append(data, "track", tracks_);
}

// Makes errors that name the file and the line of a byte in it.
class FileErrors {
public:
    FileErrors(const std::string& path, const std::string& xml) : path_(path), xml_(xml) {}

    [[nodiscard]] gps::Error at(std::ptrdiff_t offset, const std::string& what) const
    {
        const auto file = path_.substr(path_.find_last_of('/') + 1);
        const auto line = lineAt(xml_, static_cast<std::size_t>(offset));
        return hostError(fmt::format("{}, line {}: {}", file, line, what),
                         "Check the file, or export it once more", path_);
    }

private:
    const std::string& path_;
    const std::string& xml_;
};

std::string invalidPointText(const pugi::xml_node& element)
{
    constexpr std::size_t kMaxShown = 40; // characters of attributes that may hold anything
    return fmt::format(
        R"(a <{}> has invalid coordinates: its latitude is "{}", its longitude "{}")",
        localName(element), displayText(element.attribute("lat").value(), kMaxShown),
        displayText(element.attribute("lon").value(), kMaxShown));
}

std::optional<gps::Error> parse(const std::string& xml, const FileErrors& errors,
                                pugi::xml_document& document)
{
    // The parser would stop at a zero byte and call what it has read a whole document.
    if (const auto zero = xml.find('\0'); zero != std::string::npos)
        return errors.at(static_cast<std::ptrdiff_t>(zero), "the file is damaged (a zero byte)");
    constexpr auto kOptions =
        pugi::parse_default | pugi::parse_ws_pcdata_single; // a name may be a single space
    const auto result = document.load_buffer(xml.data(), xml.size(), kOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_no_document_element)
        return errors.at(0, "this is not a GPX file");
    if (!result)
        return errors.at(result.offset, fmt::format("the file is damaged or cut short ({})",
                                                    result.description()));
    if (localName(document.document_element()) != "gpx")
        return errors.at(0, "this is not a GPX file");
    if (const auto more = document.document_element().next_sibling())
        return errors.at(more.offset_debug(), "there is more text after the end of the document");
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> readGpx(const std::string& path, gps::Dictionary& data)
{
    std::string xml;
    if (auto failure = gps::FileManager{}.readFile(path, xml, kLargestGpx))
        return failure;
    const FileErrors errors{path, xml};
    if (!convertXmlToUtf8(xml))
        return errors.at(0, "the text encoding of this file is not supported");
    pugi::xml_document document;
    if (auto failure = parse(xml, errors, document))
        return failure;
    Collection collection;
    if (!collection.read(document.document_element()))
        return errors.at(collection.invalidPoint().offset_debug(),
                         invalidPointText(collection.invalidPoint()));
    collection.moveInto(data);
    return std::nullopt;
}

} // namespace host
