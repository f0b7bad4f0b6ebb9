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

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
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

// Records among which names must be unique.
struct NameScope {
    explicit NameScope(std::size_t longestName) : names(longestName) {}

    // Adds a record to send.
    void add(const NamedRecord& named) { all.push_back(named); }

    std::vector<NamedRecord> all;
    std::vector<NamedRecord> good; // those that keep their names
    std::vector<NamedRecord> rest;
    FreeNames names;       // knows the names on the receiver
    PointNames pointNames; // knows the route points on the receiver
};

std::string nameIn(const gps::Dictionary& record)
{
    return std::string{textIn(record, "name")};
}

// A name in the data and a position. A route point and a waypoint with the same ones belong
// together.
std::string placeOf(const std::string& name, const StoredRecord& stored)
{
    auto place = name + '\n';
    if (stored.position)
        gps::appendInteger(place, stored.position->key());
    return place;
}

StoredRecord storedOf(const NamedRecord& named, const TextRules& rules)
{
    if (named.kind == &kGeocache)
        return storedGeocache(*named.record);
    if (named.kind == &kRoute)
        return storedRoute(*named.record, rules.symbolCode);
    return storedWaypoint(*named.record, rules.symbolCode);
}

// Two records of a kind with the same identity are the same thing and share a name: the name in the
// data, and what the receiver stores.
std::string identityOf(const std::string& name, const StoredRecord& stored)
{
    auto identity = placeOf(name, stored) + '\n';
    gps::appendInteger(identity, static_cast<std::int64_t>(stored.details));
    return identity;
}

// Rewrites the records of one data dictionary and notes the changes.
class NameFitter {
public:
    explicit NameFitter(const TextRules& rules) : rules_(rules), converter_(rules.characters) {}

    void fitTexts(const NamedRecord& named);

    // Gives the records of a scope that can keep their names those names. Depends on the receiver
    // only for route points.
    void claimGoodNames(NameScope& scope) const;

    // Gives the other records their names.
    void assignNames(NameScope& scope);

    [[nodiscard]] std::vector<TextChange> takeChanges() { return std::move(changes_); }

private:
    // The names assigned so far in one scope.
    struct Assigned {
        std::unordered_map<std::string, std::string> byIdentity;      // of records
        std::unordered_map<std::string, std::string> pointByIdentity; // of route points
        std::unordered_map<std::string, std::string> byPlace;   // of the first that had it, and so
        std::unordered_map<std::string, std::string> byOldName; // likewise
    };

    [[nodiscard]] static bool claimPoint(NameScope& scope, const std::string& name,
                                         const StoredRecord& point);
    [[nodiscard]] Assigned namesOf(const NameScope& scope) const;
    [[nodiscard]] std::string nameOf(const NamedRecord& named, FreeNames& names,
                                     Assigned& assigned);
    [[nodiscard]] std::string pointNameOf(const NamedRecord& named, FreeNames& names,
                                          PointNames& pointNames, Assigned& assigned);
    static void rename(const NamedRecord& named, const std::string& name);
    [[nodiscard]] bool isGood(const NamedRecord& named, const std::string& name) const;
    // @param claim  claims a name like the one that it gets
    template <typename Claim>
    [[nodiscard]] std::string newName(const NamedRecord& named, const Claim& claim);

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

void NameFitter::claimGoodNames(NameScope& scope) const
{
    scope.names.reserve(scope.all.size());
    for (const auto& named : scope.all) {
        const auto name = nameIn(*named.record);
        const bool isKept =
            isGood(named, name) &&
            (named.kind == &kRoutePoint ? claimPoint(scope, name, storedOf(named, rules_))
                                        : scope.names.claim(name));
        (isKept ? scope.good : scope.rest).push_back(named);
    }
}

// A name that the point cannot have stays free for the one that it belongs to.
bool NameFitter::claimPoint(NameScope& scope, const std::string& name, const StoredRecord& point)
{
    return scope.pointNames.isClaimable(name, point) && scope.names.claim(name) &&
           scope.pointNames.claim(name, point);
}

void NameFitter::assignNames(NameScope& scope)
{
    auto assigned = namesOf(scope);
    for (const auto& named : scope.rest) {
        if (named.kind != &kRoutePoint)
            rename(named, nameOf(named, scope.names, assigned));
    }
    // A route point at its waypoint's position must get the waypoint's name, even if another route
    // point of that name comes first. So these points claim their names before any is assigned.
    for (const auto& named : scope.rest) {
        if (named.kind != &kRoutePoint)
            continue;
        const auto point = storedOf(named, rules_);
        const auto at = assigned.byPlace.find(placeOf(nameIn(*named.record), point));
        if (at != assigned.byPlace.end())
            (void)scope.pointNames.claim(at->second, point);
    }
    for (const auto& named : scope.rest) {
        if (named.kind == &kRoutePoint)
            rename(named, pointNameOf(named, scope.names, scope.pointNames, assigned));
    }
}

// The names of the good records that the rest may share. Usually there are few: the texts of all
// records would take as much memory as the records.
NameFitter::Assigned NameFitter::namesOf(const NameScope& scope) const
{
    std::unordered_set<std::string> needed;
    for (const auto& named : scope.rest)
        needed.insert(nameIn(*named.record));
    Assigned assigned;
    for (const auto& named : scope.good) {
        const auto name = nameIn(*named.record);
        if (!needed.contains(name))
            continue;
        const auto stored = storedOf(named, rules_);
        if (named.kind != &kRoutePoint)
            assigned.byIdentity.emplace(identityOf(name, stored), name);
        assigned.byPlace.emplace(placeOf(name, stored), name);
        assigned.byOldName.emplace(name, name);
    }
    return assigned;
}

std::string NameFitter::nameOf(const NamedRecord& named, FreeNames& names, Assigned& assigned)
{
    const auto before = nameIn(*named.record);
    const auto stored = storedOf(named, rules_);
    const auto [at, isNew] = assigned.byIdentity.try_emplace(identityOf(before, stored));
    if (isNew) {
        at->second = newName(
            named, [&](const std::string& wanted) { return names.claimLike(wanted, stored); });
        assigned.byPlace.emplace(placeOf(before, stored), at->second);
        assigned.byOldName.emplace(before, at->second);
    }
    return at->second;
}

std::string NameFitter::pointNameOf(const NamedRecord& named, FreeNames& names,
                                    PointNames& pointNames, Assigned& assigned)
{
    const auto before = nameIn(*named.record);
    const auto point = storedOf(named, rules_);
    auto& name = assigned.pointByIdentity[identityOf(before, point)];
    if (!name.empty())
        return name;
    const auto place = placeOf(before, point);
    const auto atSamePlace = assigned.byPlace.find(place);
    if (atSamePlace != assigned.byPlace.end() && pointNames.claim(atSamePlace->second, point))
        return name = atSamePlace->second;
    const auto first = assigned.byOldName.find(before);
    if (!before.empty() && first != assigned.byOldName.end() &&
        pointNames.claim(first->second, point))
        return name = first->second;
    const auto isUsable = [&](const std::string& usable) {
        return pointNames.isClaimable(usable, point);
    };
    name = newName(named, [&](const std::string& wanted) {
        return names.claimPointLike(wanted, point, isUsable);
    });
    assigned.byPlace.emplace(place, name);
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

template <typename Claim>
std::string NameFitter::newName(const NamedRecord& named, const Claim& claim)
{
    auto before = nameIn(*named.record);
    auto plain = converter_.convert(before);
    auto wanted = gps::trimmed(plain.text);
    if (wanted.empty())
        wanted = named.kind->defaultName;
    std::string after = claim(std::string{wanted});
    changes_.push_back(
        {named.kind->label, "name", std::move(before), after, std::move(plain.dropped)});
    return after;
}

// The three scopes: waypoints with route points, which a receiver looks up by name, geocaches, and
// routes.
struct NameScopes {
    explicit NameScopes(const TextRules& rules)
        : waypoints(rules.longestName), routes(rules.longestName)
    {}

    void addOnDevice(std::string_view key, const gps::Dictionary& record, const TextRules& rules);
    void add(gps::Dictionary& data);
    [[nodiscard]] std::array<NameScope*, 3> all() { return {&waypoints, &geocaches, &routes}; }

    NameScope waypoints;
    NameScope geocaches{std::numeric_limits<std::size_t>::max()};
    NameScope routes;
    bool haveRoutePoints = false;
};

void NameScopes::addOnDevice(std::string_view key, const gps::Dictionary& record,
                             const TextRules& rules)
{
    const auto addPoint = [&](const gps::Dictionary& point) {
        const auto stored = storedWaypoint(point, rules.symbolCode);
        waypoints.names.addPointOnDevice(nameIn(point), stored);
        waypoints.pointNames.addOnDevice(nameIn(point), stored);
    };
    if (key == kRoutePointKey)
        return addPoint(record);
    if (key != "waypoint") {
        routes.names.addOnDevice(nameIn(record), storedRoute(record, rules.symbolCode));
        return forEachRecord(record, "points", addPoint);
    }
    if (gps::isGeocache(record))
        geocaches.names.addOnDevice(nameIn(record), storedGeocache(record));
    else
        waypoints.names.addOnDevice(nameIn(record), storedWaypoint(record, rules.symbolCode));
}

void NameScopes::add(gps::Dictionary& data)
{
    forEachRecord(data, "waypoint", [&](gps::Dictionary& record) {
        if (gps::isGeocache(record))
            geocaches.add({&record, &kGeocache});
        else
            waypoints.add({&record, &kWaypoint});
    });
    forEachRecord(data, "route", [&](gps::Dictionary& route) {
        routes.add({&route, &kRoute});
        forEachRecord(route, "points", [&](gps::Dictionary& point) {
            waypoints.add({&point, &kRoutePoint});
            haveRoutePoints = true;
        });
    });
}

} // namespace

std::vector<TextChange> fitNames(gps::Dictionary& data, const RecordSource& onDevice,
                                 const TextRules& rules)
{
    NameScopes scopes{rules};
    scopes.add(data);
    const auto all = scopes.all();
    const auto readDevice = [&] {
        onDevice([&](std::string_view key, const gps::Dictionary& record) {
            scopes.addOnDevice(key, record, rules);
        });
    };

    NameFitter fitter{rules};
    for (const auto* const scope : all) {
        for (const auto& named : scope->all)
            fitter.fitTexts(named);
    }
    // Most sends are of records that keep their names. What the receiver holds, which may be a
    // hundred times as much, matters only to others and to route points.
    if (scopes.haveRoutePoints)
        readDevice();
    for (auto* const scope : all)
        fitter.claimGoodNames(*scope);
    if (!scopes.haveRoutePoints && std::any_of(all.begin(), all.end(), [](const NameScope* scope) {
            return !scope->rest.empty();
        }))
        readDevice();
    for (auto* const scope : all)
        fitter.assignNames(*scope);
    return fitter.takeChanges();
}

} // namespace host
