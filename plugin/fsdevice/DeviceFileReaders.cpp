// SPDX-License-Identifier: MIT
// One point and one extras dictionary serve a whole file, so a warm reader allocates nothing per
// line.

#include "DeviceFileReaders.h"

#include "../codec/RouteAssembler.h"
#include "../codec/RouteGaps.h"
#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/Errors.h"
#include "../common/LineAccounts.h"
#include "../common/NameTable.h"
#include "../common/Records.h"
#include "../common/TrackAnnouncer.h"
#include "FileSentences.h"
#include "NamedLines.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace magellan {
namespace {

constexpr std::size_t kUsualKeys = 5; ///< in a record

using gps::SkipReason;

std::string_view readErrorMessage(RecordKind kind)
{
    switch (kind) {
    case RecordKind::kTracks:
        return "Couldn't read track data from device";
    case RecordKind::kWaypoints:
        return "Couldn't read waypoint data from device";
    case RecordKind::kGeocaches:
        return "Couldn't read geocache data from device";
    case RecordKind::kRoutes:
        break;
    }
    return "Couldn't read route data from device";
}

/// Remembers the line of the last record of each name, and records those that were replaced.
class LinesByName {
public:
    /// @param lines  null: nothing is recorded
    explicit LinesByName(gps::LineAccount* lines) : lines_(lines) {}

    /// Precondition: the text behind the name outlives this object.
    void add(std::string_view name, std::uint64_t number)
    {
        if (lines_ == nullptr)
            return;
        const auto index = names_.indexOf(name);
        if (index == numbers_.size())
            numbers_.push_back(number);
        else
            addReplaced(*lines_, std::exchange(numbers_[index], number));
    }

private:
    gps::LineAccount* lines_;
    NameTable names_;
    std::vector<std::uint64_t> numbers_; // by index in `names_`
};

void collect(const NamedKind& kind, std::string_view text, gps::Dictionary& records)
{
    gps::LineAccount unused;
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    forEachSentence(text, kind.sentence, unused,
                    [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
                        extras.clear();
                        kind.read(fields, point, &extras);
                        keepByName(extras, point, records);
                        return std::nullopt;
                    });
}

void visitEach(const NamedKind& kind, std::string_view text,
               const std::function<void(const gps::Dictionary& record)>& visit)
{
    gps::LineAccount unused;
    gps::GPSPoint point;
    gps::Dictionary record;
    record.reserve(kUsualKeys + 1);
    forEachSentence(text, kind.sentence, unused,
                    [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
                        record.clear();
                        kind.read(fields, point, &record);
                        record.set(gps::kPointKey, point);
                        if (kind.nameIn(fields))
                            visit(record);
                        return std::nullopt;
                    });
}

void report(const NamedKind& kind, gps::GPSOutputReceiver& status, std::string_view text,
            gps::LineAccount& account)
{
    const NamedLines lines{kind, text, account};
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    for (std::size_t index = 0; index < lines.count(); ++index) {
        extras.clear();
        lines.read(index, point, extras);
        status.wayPoint(point, extras);
    }
}

void reportTracks(gps::GPSOutputReceiver& status, std::string_view text, gps::LineAccount& lines)
{
    gps::GPSPoint point; // kept from line to line: a line without a date uses the previous day
    gps::Dictionary extras;
    extras.reserve(3);
    TrackAnnouncer announcer{status};
    forEachSentence(text, kTrackPointSentence, lines,
                    [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
                        extras.clear();
                        readTrackPoint(fields, point, &extras);
                        announcer.beforePoint(extras);
                        status.trackPoint(point, extras);
                        return std::nullopt;
                    });
}

/// Reads a file and reports its text.
/// @return  the system's read error
std::optional<gps::Error> acquire(RecordKind kind, gps::GPSOutputReceiver& status,
                                  const std::string& path, gps::FileAccount* account)
{
    gps::FileAccount unused;
    std::string text;
    if (auto error = readDeviceFile(kind, path, text, account))
        return error;
    reportRecords(kind, status, text, (account != nullptr ? *account : unused).lines);
    return std::nullopt;
}

/// The complete routes of a file by name, in the order in which the names first appear; of several
/// routes with one name, the last.
class RoutesByName {
public:
    explicit RoutesByName(gps::LineAccount& lines) : lines_(lines) {}

    void add(AssembledRoute route, std::uint64_t number)
    {
        const auto [known, isNew] =
            indices_.try_emplace(*route.info.findString("name"), routes_.size());
        if (isNew) {
            routes_.emplace_back(std::move(route), number);
            return;
        }
        auto& [present, line] = routes_[known->second];
        addDefect(lines_, std::exchange(line, number), SkipReason::kReplaced);
        present = std::move(route);
    }

    void report(gps::GPSOutputReceiver& status) const
    {
        for (const auto& [route, line] : routes_)
            reportRoute(route, status);
    }

private:
    gps::LineAccount& lines_;
    std::vector<std::pair<AssembledRoute, std::uint64_t>> routes_; // with the last line of each
    std::unordered_map<std::string, std::size_t> indices_;         // into routes_
};

/// Stores a complete route under its name, which each of its sentences has set, and empties `info`
/// and `points` for the next route.
/// @return  whether it replaces a route of that name
bool storeRoute(gps::Dictionary& info, gps::Array& points, gps::Dictionary& routes)
{
    info.set("points", std::exchange(points, {}));
    const std::string name = *info.findString("name");
    const bool isKnown = routes.find(name) != nullptr;
    routes.set(name, std::exchange(info, {}));
    return isKnown;
}

void reportRoutes(gps::GPSOutputReceiver& status, std::string_view text, gps::LineAccount& lines)
{
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    RouteAssembler assembler;
    RoutesByName routes{lines};
    forEachRouteFileSentence(
        text, lines,
        [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
            extras.clear();
            readWayPoint(fields, point, &extras);
            const bool isKept = assembler.addWayPoint(extras, point);
            return isKept ? std::nullopt : Skipped{SkipReason::kNoName};
        },
        [&](const SentenceFields& fields, std::uint64_t number) -> Skipped {
            if (auto route = assembler.addSentence(fields, number, lines))
                routes.add(*std::move(route), number);
            return std::nullopt;
        });
    assembler.finish(lines);
    routes.report(status);
}

} // namespace

std::optional<gps::Error> acquireTracks(gps::GPSOutputReceiver& status, const std::string& path,
                                        gps::FileAccount* account)
{
    (void)acquire(RecordKind::kTracks, status, path, account);
    return std::nullopt;
}

std::optional<gps::Error> acquireWayPoints(gps::GPSOutputReceiver& status, const std::string& path,
                                           gps::FileAccount* account)
{
    return acquire(RecordKind::kWaypoints, status, path, account);
}

std::optional<gps::Error> acquireGeoCaches(gps::GPSOutputReceiver& status, const std::string& path,
                                           gps::FileAccount* account)
{
    return acquire(RecordKind::kGeocaches, status, path, account);
}

std::optional<gps::Error> acquireRoutes(gps::GPSOutputReceiver& status, const std::string& path,
                                        gps::FileAccount* account)
{
    (void)acquire(RecordKind::kRoutes, status, path, account);
    return std::nullopt;
}

void reportRecords(RecordKind kind, gps::GPSOutputReceiver& status, std::string_view text,
                   gps::LineAccount& lines)
{
    switch (kind) {
    case RecordKind::kTracks:
        return reportTracks(status, text, lines);
    case RecordKind::kWaypoints:
        return report(kWayPointLines, status, text, lines);
    case RecordKind::kGeocaches:
        return report(kGeoCacheLines, status, text, lines);
    case RecordKind::kRoutes:
        return reportRoutes(status, text, lines);
    }
}

std::optional<gps::Error> acquireWayPointsFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    std::string text;
    if (auto error = readDeviceFile(RecordKind::kWaypoints, path, text))
        return error;
    collect(kWayPointLines, text, records);
    return std::nullopt;
}

std::optional<gps::Error> acquireGeoCachesFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    std::string text;
    if (auto error = readDeviceFile(RecordKind::kGeocaches, path, text))
        return error;
    collect(kGeoCacheLines, text, records);
    return std::nullopt;
}

std::optional<gps::Error> acquireRoutesFromPath(const std::string& path, gps::Dictionary& waypoints,
                                                gps::Dictionary& routes)
{
    std::string text;
    if (!readDeviceFile(RecordKind::kRoutes, path, text))
        collectRoutes(text, waypoints, routes);
    return std::nullopt;
}

void visitWayPoints(std::string_view text,
                    const std::function<void(const gps::Dictionary& record)>& visit)
{
    visitEach(kWayPointLines, text, visit);
}

void visitGeoCaches(std::string_view text,
                    const std::function<void(const gps::Dictionary& record)>& visit)
{
    visitEach(kGeoCacheLines, text, visit);
}

void visitPointsOf(const NamedKind& kind, std::string_view text,
                   const std::function<void(const gps::GPSPoint& point)>& visit)
{
    gps::LineAccount unused;
    gps::GPSPoint point;
    forEachSentence(text, kind.sentence, unused,
                    [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
                        const bool isRecord = kind.nameIn(fields).has_value();
                        kind.read(fields, point, nullptr);
                        if (isRecord)
                            visit(point);
                        return std::nullopt;
                    });
}

void visitTrackPoints(std::string_view text,
                      const std::function<void(const gps::GPSPoint& point)>& visit)
{
    gps::LineAccount unused;
    gps::GPSPoint point; // kept from line to line: a line without a date uses the previous day
    forEachSentence(text, kTrackPointSentence, unused,
                    [&](const SentenceFields& fields, std::uint64_t /*number*/) -> Skipped {
                        readTrackPoint(fields, point, nullptr);
                        visit(point);
                        return std::nullopt;
                    });
}

gps::Array collectTrackPoints(std::string_view text)
{
    gps::Array points;
    visitTrackPoints(text, [&points](const gps::GPSPoint& point) {
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
    });
    return points;
}

void collectRoutes(std::string_view text, gps::Dictionary& waypoints, gps::Dictionary& routes,
                   gps::LineAccount* account)
{
    gps::LineAccount unused;
    auto& lines = account != nullptr ? *account : unused;
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    gps::Array points;
    gps::Dictionary info;
    RouteGaps gaps;
    LinesByName lineOf{account};
    forEachRouteFileSentence(
        text, lines,
        [&](const SentenceFields& fields, std::uint64_t number) -> Skipped {
            extras.clear();
            readWayPoint(fields, point, &extras);
            const auto name = wayPointName(fields);
            if (!name)
                return SkipReason::kNoName;
            lineOf.add(*name, number);
            keepByName(extras, point, waypoints);
            return std::nullopt;
        },
        [&](const SentenceFields& fields, std::uint64_t number) -> Skipped {
            const bool isLast = readRouteInfo(fields, info);
            gaps.add(fields, number, lines);
            for (auto n = appendRoutePoints(fields, points, waypoints); n > 0; --n)
                addDefect(lines, number, SkipReason::kUnknownPoint);
            if (isLast && storeRoute(info, points, routes))
                addDefect(lines, number, SkipReason::kReplaced);
            return std::nullopt;
        });
    gaps.finish(lines);
}

std::optional<gps::Error> readDeviceFile(RecordKind kind, const std::string& path,
                                         std::string& text, gps::FileAccount* account)
{
    auto error = gps::FileManager{}.readAsciiFile(path, text);
    if (error)
        gps::logError(kFilesLogSource, makeError(ErrorCode::kReadFailed, readErrorMessage(kind),
                                                 kSuggestMounting, path)
                                           .causedBy(*error));
    if (account != nullptr)
        account->error = error;
    return error;
}

} // namespace magellan
