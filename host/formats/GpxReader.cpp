// SPDX-License-Identifier: MIT
// Parses the whole document before it makes records of it, since a file is sent whole or not at
// all. The document is parsed in place, and each element is removed once it is a record, because
// both together would take twice the memory of the records.

#include "host/formats/GpxReader.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/fitting/RecordList.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/GpxRecords.h"
#include "host/formats/PlainTrackPoints.h"
#include "host/formats/UnreadValues.h"
#include "host/formats/UnstoredTexts.h"
#include "host/formats/XmlFile.h"
#include "host/formats/XmlNodes.h"

#include <gps/Geocache.h>
#include <gps/Value.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

// A point without valid coordinates.
struct InvalidPoint {
    std::ptrdiff_t offset; // in the document
    std::string text;
};

std::string invalidPointText(const pugi::xml_node& element)
{
    constexpr std::size_t kMaxShown = 40; // characters of attributes that may hold anything
    return trFormat(R"(a <{}> has invalid coordinates: its latitude is "{}", its longitude "{}")",
                    localName(element), displayText(element.attribute("lat").value(), kMaxShown),
                    displayText(element.attribute("lon").value(), kMaxShown));
}

// Gets how many bytes of the document are records, now and then. May be empty.
using Now = std::function<void(std::size_t done)>;

// The records of a document.
class Collection {
public:
    // @param plain           the track points that were taken out of the document
    // @param skipsWaypoints  whether waypoints without valid coordinates are left out
    Collection(std::vector<PlainTrackPoints> plain, bool skipsWaypoints, const Now& now)
        : plain_(std::move(plain)), skipsWaypoints_(skipsWaypoints), now_(now)
    {}

    // Moves the records out of the document. Stops at the first point without valid coordinates
    // that is not skipped.
    // @return  whether there was none
    bool read(pugi::xml_node gpx);

    // The element at which `read` stopped.
    [[nodiscard]] const pugi::xml_node& invalidPoint() const { return invalidPoint_; }

    // Whether all track points that were taken out had their places in the document.
    [[nodiscard]] bool isWhole() const noexcept { return usedPlain_ == plain_.size(); }

    // Whether nothing was left out.
    [[nodiscard]] bool isComplete() const { return skippedCount_ == 0 && unreadValues_.isEmpty(); }

    [[nodiscard]] std::size_t skippedCount() const { return skippedCount_; }
    [[nodiscard]] const std::vector<InvalidPoint>& skipped() const { return skipped_; }
    [[nodiscard]] const UnreadValues& unreadValues() const { return unreadValues_; }
    [[nodiscard]] const UnstoredTexts& unstored() const { return unstored_; }

    void moveInto(gps::Dictionary& data);

private:
    bool readElement(const pugi::xml_node& element);
    bool readWaypoint(const pugi::xml_node& element);
    bool readRoute(const pugi::xml_node& element);
    bool readTrack(const pugi::xml_node& element);
    bool readSegment(const pugi::xml_node& segment, gps::Array& points);
    bool readPointOf(const pugi::xml_node& element, gps::GPSPoint& point);
    [[nodiscard]] gps::Array takePlainPoints(const pugi::xml_node& segment);

    std::vector<PlainTrackPoints> plain_;
    std::size_t usedPlain_ = 0;
    bool skipsWaypoints_;
    const Now& now_;
    std::size_t points_ = 0;
    std::size_t skippedCount_ = 0;
    std::vector<InvalidPoint> skipped_; // the first ones
    UnreadValues unreadValues_;
    UnstoredTexts unstored_;
    gps::Array waypoints_;
    gps::Array routes_;
    gps::Array tracks_;
    pugi::xml_node invalidPoint_;
};

// Ends a walk over the elements below another one at a certain depth.
struct DepthLimit final : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& /*node*/) override
    {
        constexpr int kDeepestRemoval = 100;
        return depth() < kDeepestRemoval;
    }
};

// Visits the children of an element in order and removes each one from the document.
// @param visit  returns whether to go on; if not, its element stays
template <typename Visit> bool consumeChildren(pugi::xml_node parent, Visit visit)
{
    for (auto child = parent.first_child(); child;) {
        if (!visit(child))
            return false;
        auto done = std::exchange(child, child.next_sibling());
        // A removal is recursive: one level of elements for each level of calls.
        if (DepthLimit limit; done.traverse(limit))
            parent.remove_child(done);
    }
    return true;
}

bool Collection::read(pugi::xml_node gpx)
{
    return consumeChildren(gpx, [this](const auto& element) { return readElement(element); });
}

bool Collection::readElement(const pugi::xml_node& element)
{
    if (isOwn(element, "wpt"))
        return readWaypoint(element);
    if (isOwn(element, "rte"))
        return readRoute(element);
    if (isOwn(element, "trk"))
        return readTrack(element);
    unstored_.addOfFile(element);
    return true;
}

bool Collection::readWaypoint(const pugi::xml_node& element)
{
    gps::GPSPoint point;
    if (readPointOf(element, point)) {
        auto record = waypointRecord(element, point);
        const bool isGeocache = gps::isGeocache(record);
        unstored_.addWaypoint(element, isGeocache);
        if (isGeocache)
            unstored_.addDatesOf(record, point);
        waypoints_.emplace_back(std::move(record));
        return true;
    }
    if (skipsWaypoints_ && ++skippedCount_ <= UnreadParts::kMostNamed)
        skipped_.push_back({element.offset_debug(), invalidPointText(element)});
    return skipsWaypoints_;
}

bool Collection::readRoute(const pugi::xml_node& element)
{
    auto route = routeRecord(element);
    unstored_.addRoute(element);
    gps::Array points;
    const bool isValid = consumeChildren(element, [&](const pugi::xml_node& node) {
        gps::GPSPoint point;
        if (!isOwn(node, "rtept"))
            return true;
        if (!readPointOf(node, point))
            return false;
        unstored_.addRoutePoint(node);
        points.emplace_back(routePointRecord(node, point));
        return true;
    });
    if (!isValid)
        return false;
    route.set("points", std::move(points));
    routes_.emplace_back(std::move(route));
    return true;
}

bool Collection::readTrack(const pugi::xml_node& element)
{
    unstored_.addTrack(element);
    std::vector<gps::Array> segments;
    for (const auto& node : element.children()) {
        if (!isOwn(node, "trkseg"))
            continue;
        if (!readSegment(node, segments.emplace_back()))
            return false;
    }
    appendTrack(tracks_, trackRecord(element), std::move(segments));
    return true;
}

bool Collection::readSegment(const pugi::xml_node& segment, gps::Array& points)
{
    points = takePlainPoints(segment);
    bool hasMore = false;
    const bool isValid = consumeChildren(segment, [&](const pugi::xml_node& node) {
        gps::GPSPoint point;
        if (!isOwn(node, "trkpt")) {
            hasMore = hasMore || node.type() == pugi::node_element;
            return true;
        }
        if (!readPointOf(node, point))
            return false;
        unstored_.addTrackPoint(node);
        points.emplace_back(trackPointRecord(point));
        return true;
    });
    if (hasMore)
        unstored_.addSegment();
    return isValid;
}

// Those of a segment that is not read, such as one in another namespace, stay and are never used.
gps::Array Collection::takePlainPoints(const pugi::xml_node& segment)
{
    if (isWhole() || plain_[usedPlain_].segment != segment.offset_debug())
        return {};
    auto& taken = plain_[usedPlain_++];
    unstored_.addFractions(taken.fractions);
    return std::move(taken.points);
}

bool Collection::readPointOf(const pugi::xml_node& element, gps::GPSPoint& point)
{
    constexpr std::size_t kOften = 4096; // points
    if (++points_ % kOften == 0 && now_)
        now_(static_cast<std::size_t>(element.offset_debug()));
    UnreadTexts unread;
    if (!readPoint(element, point, unread)) {
        invalidPoint_ = element;
        return false;
    }
    if (!unread.isEmpty())
        unreadValues_.add(unread, element.offset_debug());
    unstored_.addFractions(unread.hasFraction ? 1U : 0U);
    return true;
}

void Collection::moveInto(gps::Dictionary& data)
{
    appendRecords(data, "waypoint", waypoints_);
    appendRecords(data, "route", routes_);
    appendRecords(data, "track", tracks_);
}

// @param xml    in: the text. out: unspecified
// @param plain  the points that were taken out of the text
std::optional<gps::Error> readRecords(std::string& xml, std::vector<PlainTrackPoints> plain,
                                      const XmlFile& file, gps::Dictionary& data,
                                      UnreadParts* unread, const Now& now)
{
    pugi::xml_document document;
    if (auto failure = file.parse(xml, document))
        return failure;
    const bool isTextWhole = plain.empty();
    Collection collection{std::move(plain), unread != nullptr, now};
    if (!collection.read(document.document_element()))
        return file.errorAt(collection.invalidPoint().offset_debug(),
                            invalidPointText(collection.invalidPoint()));
    // Messages about what was left out have line numbers, too.
    if (!collection.isWhole() || (!isTextWhole && !collection.isComplete()))
        return file.errorAt(0, tr("this file needs to be parsed as a whole"));
    collection.moveInto(data);
    if (unread == nullptr)
        return std::nullopt;
    unread->waypoints += collection.skippedCount();
    for (const auto& [offset, text] : collection.skipped())
        unread->firstWaypoints.push_back(file.errorAt(
            offset, trFormat("{}, so it was skipped", text), tr("Correct it, and try again")));
    collection.unstored().addTo(unread->unstored);
    if (const auto lost = collection.unstored().lostText(); !lost.empty())
        unread->ignored.push_back(
            file.sentence(trFormat("left out, because records have no place for it: {}", lost)));
    if (const auto unsent = collection.unstored().unsentText(); !unsent.empty())
        unread->unsent.push_back(file.sentence(
            trFormat("not sent, because receivers have no place for it: {}", unsent)));
    auto sentences = collection.unreadValues().sentences(file);
    std::move(sentences.begin(), sentences.end(), std::back_inserter(unread->values));
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> readGpx(const std::string& path, gps::Dictionary& data,
                                  UnreadParts* unread, const ReadProgress& progress)
{
    const XmlFile file{path, "GPX"};
    std::string xml;
    if (auto failure = file.read(xml))
        return failure;
    const auto size = xml.size();
    std::size_t taken = 0; // out of the text
    const Now now = [&](std::size_t done) {
        if (progress)
            progress(taken + done, size);
    };
    now(0);
    auto plain = takePlainTrackPoints(xml, now);
    taken = size - xml.size();
    const bool isChanged = !plain.empty();
    auto failure = readRecords(xml, std::move(plain), file, data, unread, now);
    if (!failure || !isChanged)
        return failure;
    // There is a message, and only the whole text has the right line numbers, or something looks
    // like track points where there are none.
    failure = file.read(xml);
    taken = 0;
    return failure ? failure : readRecords(xml, {}, file, data, unread, now);
}

} // namespace host
