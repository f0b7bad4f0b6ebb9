// SPDX-License-Identifier: MIT

#include "host/formats/GpxReader.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/GpxRecords.h"

#include <gps/Value.h>
#include <platform/System/FileManager.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace host {
namespace {

// What a document holds, taken element by element until one has no possible place.
class Collection {
public:
    // @return  whether all points have a possible place
    bool read(const pugi::xml_node& gpx);

    // The element that ended the reading.
    [[nodiscard]] const pugi::xml_node& misplaced() const { return misplaced_; }

    void moveInto(gps::Dictionary& data);

private:
    bool readElement(const pugi::xml_node& element);
    bool readWaypoint(const pugi::xml_node& element);
    bool readRoute(const pugi::xml_node& element);
    bool readTrack(const pugi::xml_node& element);
    bool takePoint(const pugi::xml_node& element, gps::GPSPoint& point);

    gps::Array waypoints_;
    gps::Array routes_;
    gps::Array tracks_;
    pugi::xml_node misplaced_;
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
    if (!takePoint(element, point))
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
        if (!takePoint(node, point))
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
            if (!takePoint(node, point))
                return false;
            points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
        }
    }
    track.set("points", std::move(points));
    tracks_.emplace_back(std::move(track));
    return true;
}

bool Collection::takePoint(const pugi::xml_node& element, gps::GPSPoint& point)
{
    if (readPoint(element, point))
        return true;
    misplaced_ = element;
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

// A failure at a place in a file's text.
class Complaint {
public:
    Complaint(const std::string& path, const std::string& xml) : path_(path), xml_(xml) {}

    [[nodiscard]] gps::Error at(std::ptrdiff_t offset, const std::string& what) const
    {
        const auto line = std::to_string(lineAt(xml_, static_cast<std::size_t>(offset)));
        const auto file = path_.substr(path_.find_last_of('/') + 1);
        return hostError(file + ", line " + line + ": " + what,
                         "Check the file, or export it once more", path_);
    }

private:
    const std::string& path_;
    const std::string& xml_;
};

std::string misplacedText(const pugi::xml_node& element)
{
    constexpr std::size_t kMost = 40; // characters of a text that may be anything
    std::string text = "a <";
    return text.append(localName(element))
        .append("> has no possible place: its latitude is \"")
        .append(displayText(element.attribute("lat").value(), kMost))
        .append("\", its longitude \"")
        .append(displayText(element.attribute("lon").value(), kMost))
        .append("\"");
}

std::optional<gps::Error> parse(const std::string& xml, const Complaint& complaint,
                                pugi::xml_document& document)
{
    if (const auto zero = xml.find('\0');
        zero != std::string::npos) // the parser would take it for the end
        return complaint.at(static_cast<std::ptrdiff_t>(zero), "the file is damaged (a zero byte)");
    constexpr auto kOptions =
        pugi::parse_default | pugi::parse_ws_pcdata_single; // a name may be a single space
    const auto result = document.load_buffer(xml.data(), xml.size(), kOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_no_document_element)
        return complaint.at(0, "this is no GPX file");
    if (!result)
        return complaint.at(result.offset, "the file is damaged or cut short (" +
                                               std::string{result.description()} + ")");
    if (localName(document.document_element()) != "gpx")
        return complaint.at(0, "this is no GPX file");
    if (const auto more = document.document_element().next_sibling())
        return complaint.at(more.offset_debug(), "the file goes on behind its end");
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> readGpx(const std::string& path, gps::Dictionary& data)
{
    std::string xml;
    if (auto failure = gps::FileManager{}.readFile(path, xml, kLargestGpx))
        return failure;
    const Complaint complaint{path, xml};
    if (!convertXmlToUtf8(xml))
        return complaint.at(0, "the file's text is in an encoding that is not known here");
    pugi::xml_document document;
    if (auto failure = parse(xml, complaint, document))
        return failure;
    Collection collection;
    if (!collection.read(document.document_element()))
        return complaint.at(collection.misplaced().offset_debug(),
                            misplacedText(collection.misplaced()));
    collection.moveInto(data);
    return std::nullopt;
}

} // namespace host
