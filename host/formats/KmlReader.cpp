// SPDX-License-Identifier: MIT
// Walks the document without recursion until it is known not to be nested deeply. The document is
// parsed as a whole before any record is made.

#include "host/formats/KmlReader.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/files/ZipArchive.h"
#include "host/fitting/RecordList.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/KmlRecords.h"
#include "host/formats/KmlRuns.h"
#include "host/formats/KmlText.h"
#include "host/formats/UnreadValues.h"
#include "host/formats/XmlFile.h"
#include "host/formats/XmlNodes.h"

#include <gps/Characters.h>

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

/// Real files have about ten levels.
constexpr int kMostLevels = 100;

constexpr std::string_view kArchiveStart = "PK\3\4";

// @param others  gets the names of the documents that are not read
std::string unpackKmz(std::string& content, std::vector<std::string>& others)
{
    others.clear(); // a file is loaded again for the line of an error
    if (!content.starts_with(kArchiveStart))
        return {};
    std::string text;
    auto problem = extractFromZip(content, ".kml", kLargestXml, text, &others);
    content = std::move(text);
    return problem;
}

// Precondition: there are some.
std::string otherDocumentsText(const std::vector<std::string>& names)
{
    constexpr std::size_t kMostNamed = 10;
    std::vector<std::string> shown;
    for (const auto& name : names) {
        if (shown.size() < kMostNamed)
            shown.push_back(displayText(name));
    }
    const auto more = names.size() - shown.size();
    const auto list = joined(shown, ", ");
    return trFormat("only the first KML document of the archive is read, not {}",
                    more > 0 ? trFormat("{} and {} more", list, more) : list);
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
    return trFormat("the position \"{}\" is not valid: longitude, latitude and altitude are "
                    "expected",
                    displayText(gps::trimmed(position), kMostShown));
}

bool isPlacemark(const pugi::xml_node& node)
{
    return localName(node) == "Placemark";
}

// Elements that hold what a receiver has no records for.
struct IgnoredKind {
    std::string_view element;
    CountedText text;
};

constexpr std::array kIgnoredKinds{
    IgnoredKind{"Polygon", marked("{} polygon", "{} polygons")},
    IgnoredKind{"LinearRing", marked("{} ring", "{} rings")},
    IgnoredKind{"Model", marked("{} model", "{} models")},
    IgnoredKind{"GroundOverlay", marked("{} ground overlay", "{} ground overlays")},
    IgnoredKind{"ScreenOverlay", marked("{} screen overlay", "{} screen overlays")},
    IgnoredKind{"PhotoOverlay", marked("{} photo overlay", "{} photo overlays")},
    IgnoredKind{"NetworkLink", marked("{} link to another file", "{} links to other files")},
    IgnoredKind{"Tour", marked("{} tour", "{} tours")}};

// How many there are of each.
class IgnoredElements {
public:
    void add(std::string_view element)
    {
        for (std::size_t i = 0; i < kIgnoredKinds.size(); ++i)
            counts_[i] += kIgnoredKinds[i].element == element ? 1U : 0U;
    }

    // A part of a sentence; empty if there are none.
    [[nodiscard]] std::string text() const
    {
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < kIgnoredKinds.size(); ++i) {
            const auto& kind = kIgnoredKinds[i];
            if (counts_[i] > 0)
                parts.push_back(trCounted(counts_[i], kind.text, counts_[i]));
        }
        if (parts.empty())
            return {};
        return trFormat("ignored {}; points, lines and tracks are read", joined(parts, ", "));
    }

private:
    std::array<std::size_t, kIgnoredKinds.size()> counts_{};
};

// The positions of a line, which white space separates.
class PositionTexts {
public:
    explicit PositionTexts(const pugi::xml_node& coordinates) : rest_(textOf(coordinates, joined_))
    {
        // The text of several lines lacks the white space around it.
        const char* const start = joined_.empty() ? coordinates.value() : joined_.data();
        lines_ = static_cast<std::size_t>(std::count(start, rest_.data(), '\n'));
        skipSpace();
    }

    // Returns an empty text behind the last one.
    [[nodiscard]] std::string_view current() const
    {
        const auto* const end = std::find_if(rest_.begin(), rest_.end(), gps::isWhiteSpace);
        return rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    }

    void advance()
    {
        rest_.remove_prefix(current().size());
        skipSpace();
    }

    // Those between the element and the position.
    [[nodiscard]] std::size_t lines() const noexcept { return lines_; }

private:
    void skipSpace()
    {
        const auto next = gps::withoutLeadingSpace(rest_);
        lines_ += static_cast<std::size_t>(std::count(rest_.data(), next.data(), '\n'));
        rest_ = next;
    }

    std::string joined_;
    std::string_view rest_;
    std::size_t lines_ = 0;
};

// The children of one name, each of which is removed from the document when the next one is asked
// for: the document and the records together would take twice the memory.
class ConsumedElements {
public:
    ConsumedElements(pugi::xml_node parent, std::string_view name)
        : parent_(parent), name_(name), next_(find(parent.first_child()))
    {}

    // Returns a null node behind the last one.
    pugi::xml_node next()
    {
        if (current_)
            parent_.remove_child(current_);
        current_ = next_;
        if (current_)
            next_ = find(current_.next_sibling());
        return current_;
    }

private:
    [[nodiscard]] pugi::xml_node find(pugi::xml_node node) const
    {
        while (node && localName(node) != name_)
            node = node.next_sibling();
        return node;
    }

    pugi::xml_node parent_;
    std::string_view name_;
    pugi::xml_node next_;
    pugi::xml_node current_;
};

// One line of a placemark: a segment of its track.
struct Line {
    gps::Array points;
    bool isTimed = false; // a gx:Track
};

const gps::GPSPoint& pointAt(const gps::Value& record)
{
    return *gps::findPoint(*record.as<gps::Dictionary>());
}

bool isSamePosition(const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    return a.latitude == b.latitude && a.longitude == b.longitude;
}

// Of points without times. Unknown elevations are NaNs, which equal nothing.
bool isSamePoint(const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    return isSamePosition(a, b) &&
           (a.altitude == b.altitude || (std::isnan(a.altitude) && std::isnan(b.altitude)));
}

// A gx:Track has a time for each of its points, so a track of which only some points have one is
// written as several lines. The lines without times begin and end with the points of their
// neighbours.
// @return  whether the line was appended
bool appendTo(Line& before, Line& line)
{
    if (before.isTimed == line.isTimed || before.points.empty() || line.points.empty() ||
        !isSamePosition(pointAt(before.points.back()), pointAt(line.points.front())))
        return false;
    if (before.isTimed)
        line.points.erase(line.points.begin());
    else
        before.points.pop_back();
    before.points.insert(before.points.end(), std::make_move_iterator(line.points.begin()),
                         std::make_move_iterator(line.points.end()));
    before.isTimed = line.isTimed;
    return true;
}

// Takes the points out of the lines that this program has added, and joins the lines that are one
// segment.
// @return  whether the lines are those that the text describes. If not, they are unchanged
bool applyRuns(std::string_view text, std::vector<Line>& lines)
{
    const auto runs = readKmlRuns(text);
    if (!runs || runs->size() != lines.size())
        return false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto& run = (*runs)[i];
        const std::size_t dropped = (run.dropsFirst ? 1U : 0U) + (run.dropsLast ? 1U : 0U);
        if (lines[i].points.size() < dropped || (i == 0 && run.isContinued))
            return false;
    }
    std::vector<Line> segments;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto& run = (*runs)[i];
        auto& points = lines[i].points;
        if (run.dropsLast)
            points.pop_back();
        auto first = points.begin() + (run.dropsFirst ? 1 : 0);
        if (!run.isContinued)
            segments.emplace_back();
        auto& segment = segments.back().points;
        segment.insert(segment.end(), std::make_move_iterator(first),
                       std::make_move_iterator(points.end()));
    }
    lines = std::move(segments);
    return true;
}

// What another program may have made of the same points.
void joinLines(std::vector<Line>& lines)
{
    std::vector<Line> joined;
    for (auto& line : lines) {
        // A line has two positions even where there is only one point.
        if (!line.isTimed && line.points.size() == 2 &&
            isSamePoint(pointAt(line.points.front()), pointAt(line.points.back())))
            line.points.pop_back();
        if (joined.empty() || !appendTo(joined.back(), line))
            joined.push_back(std::move(line));
    }
    lines = std::move(joined);
}

pugi::xml_node ownData(const pugi::xml_node& placemark, std::string_view name)
{
    return childOf(childOf(placemark, "ExtendedData"), name);
}

// Of a route, the line is the last one.
bool isRouteFolder(const pugi::xml_node& node)
{
    return localName(node) == "Folder" && ownData(node.last_child(), kKmlRouteLine);
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
    [[nodiscard]] const UnreadValues& unreadValues() const { return unreadValues_; }
    [[nodiscard]] std::size_t fractions() const { return fractions_; }
    [[nodiscard]] const IgnoredElements& ignored() const { return ignored_; }
    void moveInto(gps::Dictionary& data);

private:
    void readRoute(const pugi::xml_node& folder);
    bool readPlacemark(const pugi::xml_node& placemark);
    bool readGeometries(const pugi::xml_node& placemark, const pugi::xml_node& parent);
    bool readGeometry(const pugi::xml_node& placemark, const pugi::xml_node& geometry);
    void readPoint(const pugi::xml_node& placemark, const pugi::xml_node& point,
                   gps::Array& waypoints);
    bool readLine(const pugi::xml_node& line);
    bool readTrack(pugi::xml_node track);
    void note(const UnreadTexts& unread, const pugi::xml_node& element, std::size_t lines = 0);

    gps::Array waypoints_;
    gps::Array routes_;
    gps::Array tracks_;
    std::vector<Line> lines_; // of the placemark that is being read
    Problem problem_;
    std::vector<Problem> skipped_; // the first ones
    std::size_t skippedCount_ = 0;
    UnreadValues unreadValues_;
    std::size_t fractions_ = 0; // of a second, in times
    IgnoredElements ignored_;
};

bool Placemarks::read(const pugi::xml_node& parent)
{
    const auto nodes = parent.children();
    return std::all_of(nodes.begin(), nodes.end(), [this](const pugi::xml_node& node) {
        ignored_.add(localName(node));
        if (isRouteFolder(node)) {
            readRoute(node);
            return true;
        }
        return isPlacemark(node) ? readPlacemark(node) : read(node);
    });
}

void Placemarks::readRoute(const pugi::xml_node& folder)
{
    auto route = kmlTrack(folder.last_child());
    gps::Array points;
    for (const auto& placemark : folder.children()) {
        if (const auto point = childOf(placemark, "Point"))
            readPoint(placemark, point, points);
    }
    route.set("points", std::move(points));
    routes_.emplace_back(std::move(route));
}

bool Placemarks::readPlacemark(const pugi::xml_node& placemark)
{
    lines_.clear();
    if (!readGeometries(placemark, placemark))
        return false;
    const auto runs = ownData(placemark, kKmlTrackRuns);
    if (lines_.empty() && !runs)
        return true;
    if (!runs || !applyRuns(textOf(runs), lines_))
        joinLines(lines_);
    std::vector<gps::Array> segments;
    for (auto& line : lines_)
        segments.push_back(std::move(line.points));
    appendTrack(tracks_, kmlTrack(placemark), std::move(segments));
    return true;
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
        return readLine(geometry);
    if (name == "Track")
        return readTrack(geometry);
    if (name == "Point")
        readPoint(placemark, geometry, waypoints_);
    ignored_.add(name);
    return true;
}

void Placemarks::note(const UnreadTexts& unread, const pugi::xml_node& element, std::size_t lines)
{
    if (!unread.isEmpty())
        unreadValues_.add(unread, element.offset_debug(), lines);
    fractions_ += unread.hasFraction ? 1U : 0U;
}

void Placemarks::readPoint(const pugi::xml_node& placemark, const pugi::xml_node& point,
                           gps::Array& waypoints)
{
    const auto text = childText(point, "coordinates");
    gps::GPSPoint position;
    UnreadTexts unread;
    if (readKmlPosition(gps::trimmed(text), ',', position, unread)) {
        waypoints.emplace_back(kmlWaypoint(placemark, position, unread));
        note(unread, point);
    } else if (++skippedCount_ <= UnreadParts::kMostNamed) {
        skipped_.push_back({point, invalidText(text)});
    }
}

bool Placemarks::readLine(const pugi::xml_node& line)
{
    const auto element = childOf(line, "coordinates");
    gps::Array points;
    PositionTexts positions{element};
    for (; !positions.current().empty(); positions.advance()) {
        gps::GPSPoint point;
        UnreadTexts unread;
        if (!readKmlPosition(positions.current(), ',', point, unread)) {
            problem_ = {element, invalidText(positions.current()), positions.lines()};
            return false;
        }
        note(unread, element, positions.lines());
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
    }
    lines_.push_back({std::move(points), false});
    return true;
}

// Lists all times, then all positions. An empty position is one that is not known.
bool Placemarks::readTrack(pugi::xml_node track)
{
    gps::Array points;
    std::string joined;
    ConsumedElements times{track, "when"};
    ConsumedElements positions{track, "coord"};
    while (const auto node = positions.next()) {
        UnreadTexts unread;
        const auto when = times.next();
        gps::GPSPoint point{.time = when ? timeIn(textOf(when, joined), unread) : 0};
        note(unread, when);
        unread = {};
        const auto text = gps::trimmed(textOf(node, joined));
        if (text.empty())
            continue;
        if (!readKmlPosition(text, ' ', point, unread)) {
            problem_ = {node, invalidText(text)};
            return false;
        }
        note(unread, node);
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
    }
    lines_.push_back({std::move(points), true});
    return true;
}

void Placemarks::moveInto(gps::Dictionary& data)
{
    appendRecords(data, "waypoint", waypoints_);
    appendRecords(data, "route", routes_);
    appendRecords(data, "track", tracks_);
}

} // namespace

std::optional<gps::Error> readKml(const std::string& path, gps::Dictionary& data,
                                  UnreadParts& unread)
{
    std::vector<std::string> others;
    const XmlFile file{path, "KML",
                       [&others](std::string& content) { return unpackKmz(content, others); }};
    std::string xml;
    if (auto failure = file.read(xml))
        return failure;
    pugi::xml_document document;
    if (auto failure = file.parse(xml, document))
        return failure;
    if (DepthCheck check; !document.traverse(check))
        return file.errorAt(check.tooDeep.offset_debug(),
                            trFormat("elements are nested more than {} levels deep", kMostLevels));
    Placemarks placemarks;
    if (!placemarks.read(document)) {
        const auto& problem = placemarks.problem();
        return file.errorAt(problem.element.offset_debug(), problem.text, tr(kCheckFile),
                            problem.lines);
    }
    placemarks.moveInto(data);
    unread.waypoints += placemarks.skippedCount();
    for (const auto& [element, text, lines] : placemarks.skipped())
        unread.firstWaypoints.push_back(file.errorAt(element.offset_debug(),
                                                     trFormat("{}, so it was skipped", text),
                                                     tr("Correct it, and try again")));
    auto values = placemarks.unreadValues().sentences(file);
    std::move(values.begin(), values.end(), std::back_inserter(unread.values));
    if (!others.empty())
        unread.ignored.push_back(file.sentence(otherDocumentsText(others)));
    if (placemarks.fractions() > 0)
        unread.ignored.push_back(
            file.sentence(trFormat("left out, because records have no place for it: {}",
                                   fractionsText(placemarks.fractions()))));
    if (const auto text = placemarks.ignored().text(); !text.empty())
        unread.ignored.push_back(file.sentence(text));
    return std::nullopt;
}

} // namespace host
