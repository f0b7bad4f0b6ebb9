// SPDX-License-Identifier: MIT
// Walks the document without recursion until it is known not to be nested deeply. The document is
// parsed as a whole before any record is made.

#include "host/formats/KmlReader.h"

#include "host/base/Text.h"
#include "host/files/ZipArchive.h"
#include "host/fitting/RecordList.h"
#include "host/formats/GpxTime.h"
#include "host/formats/KmlRecords.h"
#include "host/formats/XmlFile.h"
#include "host/formats/XmlNodes.h"

#include <gps/Characters.h>

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

/// Real files have about ten levels.
constexpr int kMostLevels = 100;

constexpr std::string_view kArchiveStart = "PK\3\4";

std::string unpackKmz(std::string& content)
{
    if (!content.starts_with(kArchiveStart))
        return {};
    std::string text;
    auto problem = extractFromZip(content, ".kml", kLargestXml, text);
    content = std::move(text);
    return problem;
}

// Finds the first element below too many others.
struct DepthCheck final : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override
    {
        if (depth() < kMostLevels)
            return true;
        tooDeep = node;
        return false;
    }

    pugi::xml_node tooDeep;
};

struct Problem {
    pugi::xml_node element;
    std::string text;
    std::size_t lines = 0; // from the element to the problem
};

std::string invalidText(std::string_view position)
{
    constexpr std::size_t kMostShown = 40; // characters
    return fmt::format("the position \"{}\" is not valid: longitude, latitude and altitude are "
                       "expected",
                       displayText(gps::trimmed(position), kMostShown));
}

bool isPlacemark(const pugi::xml_node& node)
{
    return localName(node) == "Placemark";
}

// The records of a document that is not nested deeply.
class Placemarks {
public:
    // Stops at the first line that cannot be read.
    // @return  whether there was none
    bool read(const pugi::xml_node& parent);

    [[nodiscard]] const Problem& problem() const { return problem_; }
    [[nodiscard]] const std::vector<Problem>& skipped() const { return skipped_; }
    [[nodiscard]] std::size_t skippedCount() const { return skippedCount_; }
    void moveInto(gps::Dictionary& data);

private:
    bool readGeometries(const pugi::xml_node& placemark, const pugi::xml_node& parent);
    bool readGeometry(const pugi::xml_node& placemark, const pugi::xml_node& geometry);
    void readPoint(const pugi::xml_node& placemark, const pugi::xml_node& point);
    bool readLine(const pugi::xml_node& placemark, const pugi::xml_node& line);
    bool readTrack(const pugi::xml_node& placemark, const pugi::xml_node& track);
    void addTrack(const pugi::xml_node& placemark, gps::Array points);

    gps::Array waypoints_;
    gps::Array tracks_;
    Problem problem_;
    std::vector<Problem> skipped_; // the first ones
    std::size_t skippedCount_ = 0;
};

bool Placemarks::read(const pugi::xml_node& parent)
{
    const auto nodes = parent.children();
    return std::all_of(nodes.begin(), nodes.end(), [this](const pugi::xml_node& node) {
        return isPlacemark(node) ? readGeometries(node, node) : read(node);
    });
}

bool Placemarks::readGeometries(const pugi::xml_node& placemark, const pugi::xml_node& parent)
{
    const auto nodes = parent.children();
    return std::all_of(nodes.begin(), nodes.end(),
                       [&](const pugi::xml_node& node) { return readGeometry(placemark, node); });
}

bool Placemarks::readGeometry(const pugi::xml_node& placemark, const pugi::xml_node& geometry)
{
    const auto name = localName(geometry);
    if (name == "MultiGeometry" || name == "MultiTrack")
        return readGeometries(placemark, geometry);
    if (name == "LineString")
        return readLine(placemark, geometry);
    if (name == "Track")
        return readTrack(placemark, geometry);
    if (name == "Point")
        readPoint(placemark, geometry);
    return true;
}

void Placemarks::readPoint(const pugi::xml_node& placemark, const pugi::xml_node& point)
{
    const auto text = childText(point, "coordinates");
    gps::GPSPoint position;
    if (readKmlPosition(gps::trimmed(text), ',', position))
        waypoints_.emplace_back(kmlWaypoint(placemark, position));
    else if (++skippedCount_ <= SkippedWaypoints::kMostNamed)
        skipped_.push_back({point, invalidText(text)});
}

bool Placemarks::readLine(const pugi::xml_node& placemark, const pugi::xml_node& line)
{
    const auto element = childOf(line, "coordinates");
    std::string joined;
    const auto text = textOf(element, joined);
    gps::Array points;
    for (auto rest = gps::withoutLeadingSpace(text); !rest.empty();
         rest = gps::withoutLeadingSpace(rest)) {
        const auto* const end = std::find_if(rest.begin(), rest.end(), gps::isWhiteSpace);
        const auto position = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        gps::GPSPoint point;
        if (!readKmlPosition(position, ',', point)) {
            // The text of several lines lacks the white space around it.
            const char* const start = joined.empty() ? element.value() : joined.data();
            const auto lines = std::count(start, position.data(), '\n');
            problem_ = {element, invalidText(position), static_cast<std::size_t>(lines)};
            return false;
        }
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
        rest.remove_prefix(position.size());
    }
    addTrack(placemark, std::move(points));
    return true;
}

// Lists all times, then all positions. An empty position is one that is not known.
bool Placemarks::readTrack(const pugi::xml_node& placemark, const pugi::xml_node& track)
{
    gps::Array points;
    std::string joined;
    auto when = track.first_child();
    const auto timeOf = [&joined, &when] {
        while (when && localName(when) != "when")
            when = when.next_sibling();
        const auto time = when ? readGpxTime(textOf(when, joined)) : std::nullopt;
        if (when)
            when = when.next_sibling();
        return time.value_or(0);
    };
    for (const auto& node : track.children()) {
        if (localName(node) != "coord")
            continue;
        gps::GPSPoint point{.time = timeOf()};
        const auto text = gps::trimmed(textOf(node, joined));
        if (text.empty())
            continue;
        if (!readKmlPosition(text, ' ', point)) {
            problem_ = {node, invalidText(text)};
            return false;
        }
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
    }
    addTrack(placemark, std::move(points));
    return true;
}

void Placemarks::addTrack(const pugi::xml_node& placemark, gps::Array points)
{
    auto track = kmlTrack(placemark);
    track.set("points", std::move(points));
    tracks_.emplace_back(std::move(track));
}

void Placemarks::moveInto(gps::Dictionary& data)
{
    appendRecords(data, "waypoint", waypoints_);
    appendRecords(data, "track", tracks_);
}

// Why a document is not read, although it is well-formed.
std::optional<gps::Error> refusalOf(pugi::xml_document& document, const XmlFile& file)
{
    for (const auto& node : document.children()) {
        if (node.type() == pugi::node_doctype &&
            std::string_view{node.value()}.find("<!ENTITY") != std::string_view::npos)
            return file.errorAt(0, "the file declares entities, which no map file needs");
    }
    if (DepthCheck check; !document.traverse(check))
        return file.errorAt(
            check.tooDeep.offset_debug(),
            fmt::format("elements are nested more than {} levels deep", kMostLevels));
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> readKml(const std::string& path, gps::Dictionary& data,
                                  SkippedWaypoints& skipped)
{
    const XmlFile file{path, "KML", unpackKmz};
    std::string xml;
    if (auto failure = file.read(xml))
        return failure;
    pugi::xml_document document;
    if (auto failure = file.parse(xml, document))
        return failure;
    if (auto failure = refusalOf(document, file))
        return failure;
    Placemarks placemarks;
    if (!placemarks.read(document)) {
        const auto& problem = placemarks.problem();
        return file.errorAt(problem.element.offset_debug(), problem.text,
                            "Check the file, or export it once more", problem.lines);
    }
    placemarks.moveInto(data);
    skipped.count += placemarks.skippedCount();
    for (const auto& [element, text, lines] : placemarks.skipped())
        skipped.first.push_back(file.errorAt(element.offset_debug(), text + ", so it was skipped",
                                             "Correct it, and try again"));
    return std::nullopt;
}

} // namespace host
