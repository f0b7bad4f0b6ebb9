// SPDX-License-Identifier: MIT
// Names are assigned in passes, because a good name must not be given to a record that comes before
// its owner: first the good names, then the other records, then the route points, which follow
// their waypoints.

#include "host/fitting/NameFitting.h"

#include "host/base/RecordText.h"
#include "host/base/XmlText.h"
#include "host/fitting/FreeNames.h"
#include "host/fitting/PlainTextConverter.h"
#include "host/fitting/PointNames.h"
#include "host/fitting/RecordList.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <limits>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace host {
namespace {

// Every text that a device stores except the name, which has rules of its own.
constexpr auto kTextKeys = std::span{gps::kGeocacheKeys}.subspan<1>();

struct Kind {
    std::string_view label;
    std::string_view defaultName; // for a record whose name is missing or has no usable character
};

constexpr Kind kWaypoint{"waypoint", "Waypoint"};
constexpr Kind kGeocache{"geocache", "Geocache"};
constexpr Kind kRoute{"route", "Route"};
constexpr Kind kRoutePoint{"route point", "Waypoint"};

struct NamedRecord {
    gps::Dictionary* record;
    const Kind* kind;
};

std::string nameIn(const gps::Dictionary& record)
{
    return std::string{textIn(record, "name")};
}

// A record's own point; for a route, its first one.
gps::GPSPoint pointOf(const gps::Dictionary& record)
{
    if (const auto* const point = gps::findPoint(record))
        return *point;
    gps::GPSPoint first;
    bool isFirst = true;
    forEachRecord(record, "points", [&](const gps::Dictionary& point) {
        if (std::exchange(isFirst, false))
            first = pointOf(point);
    });
    return first;
}

void appendCoordinates(std::string& text, const gps::GPSPoint& point)
{
    for (const double degrees : {point.latitude, point.longitude}) {
        text += '\n';
        gps::appendShortest(text, degrees);
    }
}

// Two records with the same identity are the same thing and share a name: the name in the data and
// the exact coordinates, or only the name of a geocache.
std::string identityOf(const NamedRecord& named)
{
    std::string identity = nameIn(*named.record);
    if (named.kind == &kGeocache && !identity.empty())
        return identity;
    appendCoordinates(identity, pointOf(*named.record));
    forEachRecord(*named.record, "points", [&](const gps::Dictionary& point) {
        appendCoordinates(identity, pointOf(point));
    });
    return identity;
}

// Rewrites the records of one data dictionary and notes the changes.
class NameFitter {
public:
    explicit NameFitter(const TextRules& rules) : rules_(rules), converter_(rules.characters) {}

    void fitTexts(const NamedRecord& named);

    // Gives all records of one scope their names.
    // @param names       knows the names on the receiver
    // @param pointNames  knows the positions of the route points on the receiver
    void fitNames(const std::vector<NamedRecord>& records, FreeNames names,
                  PointNames pointNames = {});

    [[nodiscard]] std::vector<TextChange> takeChanges() { return std::move(changes_); }

private:
    // The names assigned so far in one scope.
    struct Assigned {
        std::unordered_map<std::string, std::string> byIdentity;
        std::unordered_map<std::string, std::string> byOldName; // of the first record that had it
    };

    // Records by whether they keep their names.
    struct Sorted {
        std::vector<NamedRecord> good;
        std::vector<NamedRecord> rest;
    };

    [[nodiscard]] Sorted claimGoodNames(const std::vector<NamedRecord>& records, FreeNames& names,
                                        PointNames& pointNames) const;
    [[nodiscard]] static Assigned namesOf(const Sorted& records);
    [[nodiscard]] std::string nameOf(const NamedRecord& named, FreeNames& names,
                                     Assigned& assigned);
    [[nodiscard]] std::string pointNameOf(const NamedRecord& named, FreeNames& names,
                                          PointNames& pointNames, Assigned& assigned);
    static void rename(const NamedRecord& named, const std::string& name);
    [[nodiscard]] bool isGood(const NamedRecord& named, const std::string& name) const;
    [[nodiscard]] std::string newName(const NamedRecord& named, FreeNames& names);

    const TextRules& rules_;
    PlainTextConverter converter_;
    std::vector<TextChange> changes_;
};

void NameFitter::fitTexts(const NamedRecord& named)
{
    for (const auto key : kTextKeys) {
        const auto* const text = named.record->findString(key);
        if (text == nullptr || converter_.isPlain(*text))
            continue;
        auto plain = converter_.convert(*text);
        changes_.push_back({named.kind->label, key, *text, plain.text, std::move(plain.dropped)});
        named.record->set(key, std::move(plain.text));
    }
}

void NameFitter::fitNames(const std::vector<NamedRecord>& records, FreeNames names,
                          PointNames pointNames)
{
    const auto sorted = claimGoodNames(records, names, pointNames);
    const auto& rest = sorted.rest;
    auto assigned = namesOf(sorted);
    for (const auto& named : rest) {
        if (named.kind != &kRoutePoint)
            rename(named, nameOf(named, names, assigned));
    }
    // A route point at its waypoint's position must get the waypoint's name, even if another route
    // point of that name comes first. So these positions claim their names before any is assigned.
    for (const auto& named : rest) {
        const auto at = named.kind == &kRoutePoint ? assigned.byIdentity.find(identityOf(named))
                                                   : assigned.byIdentity.end();
        if (at != assigned.byIdentity.end())
            (void)pointNames.claim(at->second, pointOf(*named.record));
    }
    for (const auto& named : rest) {
        if (named.kind == &kRoutePoint)
            rename(named, pointNameOf(named, names, pointNames, assigned));
    }
}

NameFitter::Sorted NameFitter::claimGoodNames(const std::vector<NamedRecord>& records,
                                              FreeNames& names, PointNames& pointNames) const
{
    Sorted sorted;
    for (const auto& named : records) {
        const auto name = nameIn(*named.record);
        const bool isKept =
            isGood(named, name) && names.claim(name) &&
            (named.kind != &kRoutePoint || pointNames.claim(name, pointOf(*named.record)));
        (isKept ? sorted.good : sorted.rest).push_back(named);
    }
    return sorted;
}

// The names of the good records that the rest may share. Usually there are few: the texts of all
// records would take as much memory as the records.
NameFitter::Assigned NameFitter::namesOf(const Sorted& records)
{
    std::unordered_set<std::string> needed;
    for (const auto& named : records.rest)
        needed.insert(nameIn(*named.record));
    Assigned assigned;
    for (const auto& named : records.good) {
        const auto name = nameIn(*named.record);
        if (!needed.contains(name))
            continue;
        assigned.byIdentity.emplace(identityOf(named), name);
        assigned.byOldName.emplace(name, name);
    }
    return assigned;
}

std::string NameFitter::nameOf(const NamedRecord& named, FreeNames& names, Assigned& assigned)
{
    const auto [at, isNew] = assigned.byIdentity.try_emplace(identityOf(named));
    if (isNew) {
        at->second = newName(named, names);
        assigned.byOldName.emplace(nameIn(*named.record), at->second);
    }
    return at->second;
}

std::string NameFitter::pointNameOf(const NamedRecord& named, FreeNames& names,
                                    PointNames& pointNames, Assigned& assigned)
{
    const auto before = nameIn(*named.record);
    const auto point = pointOf(*named.record);
    auto& name = assigned.byIdentity[identityOf(named)]; // empty if not assigned yet
    if (!name.empty() && pointNames.claim(name, point))
        return name;
    const auto first = assigned.byOldName.find(before);
    if (!before.empty() && first != assigned.byOldName.end() &&
        pointNames.claim(first->second, point))
        return name = first->second;
    name = newName(named, names);
    assigned.byOldName.emplace(before, name);
    (void)pointNames.claim(name,
                           point); // succeeds: it is free, or this point's from an earlier send
    return name;
}

void NameFitter::rename(const NamedRecord& named, const std::string& name)
{
    if (nameIn(*named.record) != name)
        named.record->set("name", name);
}

bool NameFitter::isGood(const NamedRecord& named, const std::string& name) const
{
    const bool isShort = named.kind == &kGeocache || name.size() <= rules_.longestName;
    return isShort && name.find_first_not_of(' ') != std::string::npos && converter_.isPlain(name);
}

std::string NameFitter::newName(const NamedRecord& named, FreeNames& names)
{
    auto before = nameIn(*named.record);
    auto plain = converter_.convert(before);
    auto wanted = gps::trimmed(plain.text);
    if (wanted.empty())
        wanted = named.kind->defaultName;
    auto after = names.claimLike(wanted, pointOf(*named.record));
    changes_.push_back(
        {named.kind->label, "name", std::move(before), after, std::move(plain.dropped)});
    return after;
}

// The three scopes within which names must be unique: waypoints with route points, geocaches, and
// routes. Each has the records to send and the names on the receiver.
struct NameScopes {
    explicit NameScopes(const TextRules& rules)
        : waypointNames(rules.longestName), routeNames(rules.longestName)
    {}

    void addOnDevice(std::string_view key, const gps::Dictionary& record);
    void add(gps::Dictionary& data);

    std::vector<NamedRecord> waypoints; // and route points, which a receiver looks up by name
    std::vector<NamedRecord> geocaches;
    std::vector<NamedRecord> routes;
    FreeNames waypointNames;
    PointNames pointNames;
    FreeNames geocacheNames{std::numeric_limits<std::size_t>::max()};
    FreeNames routeNames;
};

void NameScopes::addOnDevice(std::string_view key, const gps::Dictionary& record)
{
    const auto addTo = [](FreeNames& names, const gps::Dictionary& named) {
        names.addOnDevice(nameIn(named), pointOf(named));
    };
    if (key == "waypoint")
        return addTo(gps::isGeocache(record) ? geocacheNames : waypointNames, record);
    addTo(routeNames, record);
    forEachRecord(record, "points", [&](const gps::Dictionary& point) {
        addTo(waypointNames, point);
        pointNames.addOnDevice(nameIn(point), pointOf(point));
    });
}

void NameScopes::add(gps::Dictionary& data)
{
    forEachRecord(data, "waypoint", [&](gps::Dictionary& record) {
        if (gps::isGeocache(record))
            geocaches.push_back({&record, &kGeocache});
        else
            waypoints.push_back({&record, &kWaypoint});
    });
    forEachRecord(data, "route", [&](gps::Dictionary& route) {
        routes.push_back({&route, &kRoute});
        forEachRecord(route, "points", [&](gps::Dictionary& point) {
            waypoints.push_back({&point, &kRoutePoint});
        });
    });
}

} // namespace

std::vector<TextChange> fitNames(gps::Dictionary& data, const RecordSource& onDevice,
                                 const TextRules& rules)
{
    NameScopes scopes{rules};
    onDevice([&](std::string_view key, const gps::Dictionary& record) {
        scopes.addOnDevice(key, record);
    });
    scopes.add(data);

    NameFitter fitter{rules};
    for (const auto* const records : {&scopes.waypoints, &scopes.geocaches, &scopes.routes}) {
        for (const auto& named : *records)
            fitter.fitTexts(named);
    }
    fitter.fitNames(scopes.waypoints, std::move(scopes.waypointNames),
                    std::move(scopes.pointNames));
    fitter.fitNames(scopes.geocaches, std::move(scopes.geocacheNames));
    fitter.fitNames(scopes.routes, std::move(scopes.routeNames));
    return fitter.takeChanges();
}

} // namespace host
