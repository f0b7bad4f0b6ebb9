// SPDX-License-Identifier: MIT

#include "host/fitting/NameFitting.h"

#include "host/base/XmlText.h"
#include "host/fitting/FreeNames.h"
#include "host/fitting/PlainText.h"
#include "host/fitting/PointNames.h"
#include "host/fitting/RecordList.h"

#include <gps/NumberText.h>

#include <array>
#include <limits>
#include <unordered_map>
#include <utility>

namespace host {
namespace {

constexpr std::array<std::string_view, 8> kTextKeys{"comment",      "geocacheOwner", "geocacheHint",
                                                    "geocacheType", "datePlaced",    "dateFound",
                                                    "difficulty",   "terrain"};

struct Kind {
    std::string_view name;
    std::string_view nameless; // what a thing of this kind is called that has no name
};

constexpr Kind kWaypoint{"waypoint", "Waypoint"};
constexpr Kind kGeocache{"geocache", "Geocache"};
constexpr Kind kRoute{"route", "Route"};
constexpr Kind kRoutePoint{"route point", "Waypoint"};

// A record whose name is to be fitted.
struct Named {
    gps::Dictionary* record;
    const Kind* kind;
};

std::string nameIn(const gps::Dictionary& record)
{
    const auto* const name = record.findString("name");
    return name != nullptr ? *name : std::string{};
}

bool isGeocache(const gps::Dictionary& record)
{
    const auto* const symbol = record.findString("symbol");
    return symbol != nullptr && symbol->starts_with("Geocache");
}

// Where a thing is: a route where it begins.
gps::GPSPoint placeOf(const gps::Dictionary& record)
{
    if (const auto* const point = gps::findPoint(record))
        return *point;
    gps::GPSPoint place;
    bool isFirst = true;
    forEachRecord(record, "points", [&](const gps::Dictionary& point) {
        if (std::exchange(isFirst, false))
            place = placeOf(point);
    });
    return place;
}

void appendPlace(std::string& text, const gps::GPSPoint& place)
{
    for (const double degrees : {place.latitude, place.longitude}) {
        text += '\n';
        gps::appendShortest(text, degrees);
    }
}

// What tells one thing of the data from another: its name and where it lies.
std::string identityOf(const Named& named)
{
    std::string identity = nameIn(*named.record);
    if (named.kind == &kGeocache && !identity.empty())
        return identity;
    appendPlace(identity, placeOf(*named.record));
    forEachRecord(*named.record, "points",
                  [&](const gps::Dictionary& point) { appendPlace(identity, placeOf(point)); });
    return identity;
}

// One fitting of one data dictionary.
class Fitting {
public:
    explicit Fitting(const TextRules& rules) : rules_(rules), plainTexts_(rules.characters) {}

    void fitTexts(const Named& named);

    // @param names   knows the device's names
    // @param places  knows where the points of the device's routes lie
    void fitNames(const std::vector<Named>& things, FreeNames names, PointNames places = {});

    [[nodiscard]] std::vector<TextChange> takeChanges() { return std::move(changes_); }

private:
    // The names that were given.
    struct Known {
        std::unordered_map<std::string, std::string> byIdentity;
        std::unordered_map<std::string, std::string> byName; // to the first thing of a name
    };

    void takeGoodNames(const std::vector<Named>& things, FreeNames& names, PointNames& places,
                       Known& known) const;
    [[nodiscard]] std::string nameOf(const Named& named, FreeNames& names, Known& known);
    [[nodiscard]] std::string pointNameOf(const Named& named, FreeNames& names, PointNames& places,
                                          Known& known);
    static void rename(const Named& named, const std::string& name);
    [[nodiscard]] bool isGood(const Named& named, const std::string& name) const;
    [[nodiscard]] std::string newName(const Named& named, FreeNames& names);

    const TextRules& rules_;
    PlainTexts plainTexts_;
    std::vector<TextChange> changes_;
};

void Fitting::fitTexts(const Named& named)
{
    for (const auto key : kTextKeys) {
        const auto* const text = named.record->findString(key);
        if (text == nullptr || plainTexts_.isPlain(*text))
            continue;
        auto plain = plainTexts_.of(*text);
        changes_.push_back({named.kind->name, key, *text, plain.text, std::move(plain.dropped)});
        named.record->set(key, std::move(plain.text));
    }
}

void Fitting::fitNames(const std::vector<Named>& things, FreeNames names, PointNames places)
{
    Known known;
    takeGoodNames(things, names, places, known);
    for (const auto& named : things) {
        if (named.kind != &kRoutePoint)
            rename(named, nameOf(named, names, known));
    }
    // A point at its waypoint's place has a better claim to the waypoint's name than one elsewhere.
    for (const auto& named : things) {
        const auto at = named.kind == &kRoutePoint ? known.byIdentity.find(identityOf(named))
                                                   : known.byIdentity.end();
        if (at != known.byIdentity.end())
            (void)places.claim(at->second, placeOf(*named.record));
    }
    for (const auto& named : things) {
        if (named.kind == &kRoutePoint)
            rename(named, pointNameOf(named, names, places, known));
    }
}

// Good names first: no other may take them away.
void Fitting::takeGoodNames(const std::vector<Named>& things, FreeNames& names, PointNames& places,
                            Known& known) const
{
    for (const auto& named : things) {
        const auto name = nameIn(*named.record);
        if (!isGood(named, name) || !names.take(name))
            continue;
        if (named.kind == &kRoutePoint && !places.claim(name, placeOf(*named.record)))
            continue;
        known.byIdentity.emplace(identityOf(named), name);
        known.byName.emplace(name, name);
    }
}

std::string Fitting::nameOf(const Named& named, FreeNames& names, Known& known)
{
    const auto [at, isNew] = known.byIdentity.try_emplace(identityOf(named));
    if (isNew) {
        at->second = newName(named, names);
        known.byName.emplace(nameIn(*named.record), at->second);
    }
    return at->second;
}

std::string Fitting::pointNameOf(const Named& named, FreeNames& names, PointNames& places,
                                 Known& known)
{
    const auto before = nameIn(*named.record);
    const auto place = placeOf(*named.record);
    auto& name = known.byIdentity[identityOf(named)]; // empty: not known
    if (!name.empty() && places.claim(name, place))
        return name;
    const auto first = known.byName.find(before);
    if (!before.empty() && first != known.byName.end() && places.claim(first->second, place))
        return name = first->second;
    name = newName(named, names);
    known.byName.emplace(before, name);
    (void)places.claim(name, place); // it is free, or this point's own from an earlier send
    return name;
}

void Fitting::rename(const Named& named, const std::string& name)
{
    if (nameIn(*named.record) != name)
        named.record->set("name", name);
}

bool Fitting::isGood(const Named& named, const std::string& name) const
{
    const bool isShort = named.kind == &kGeocache || name.size() <= rules_.longestName;
    return isShort && name.find_first_not_of(' ') != std::string::npos && plainTexts_.isPlain(name);
}

std::string Fitting::newName(const Named& named, FreeNames& names)
{
    auto before = nameIn(*named.record);
    auto plain = plainTexts_.of(before);
    auto wanted = withoutOuterSpace(plain.text);
    if (wanted.empty())
        wanted = named.kind->nameless;
    auto after = names.find(wanted, placeOf(*named.record));
    changes_.push_back(
        {named.kind->name, "name", std::move(before), after, std::move(plain.dropped)});
    return after;
}

// The things whose names must differ from one another, and the names that the device holds of such
// things.
struct NameSpaces {
    explicit NameSpaces(const TextRules& rules)
        : waypointNames(rules.longestName), routeNames(rules.longestName)
    {}

    void addOnDevice(const gps::Dictionary& data);
    void add(gps::Dictionary& data);

    std::vector<Named> waypoints; // and routes' points, which a device finds by their names
    std::vector<Named> geocaches;
    std::vector<Named> routes;
    FreeNames waypointNames;
    PointNames pointNames;
    FreeNames geocacheNames{std::numeric_limits<std::size_t>::max()};
    FreeNames routeNames;
};

void NameSpaces::addOnDevice(const gps::Dictionary& data)
{
    const auto addTo = [](FreeNames& names, const gps::Dictionary& record) {
        names.addOnDevice(nameIn(record), placeOf(record));
    };
    forEachRecord(data, "waypoint", [&](const gps::Dictionary& record) {
        addTo(isGeocache(record) ? geocacheNames : waypointNames, record);
    });
    forEachRecord(data, "route", [&](const gps::Dictionary& route) {
        addTo(routeNames, route);
        forEachRecord(route, "points", [&](const gps::Dictionary& point) {
            addTo(waypointNames, point);
            pointNames.addOnDevice(nameIn(point), placeOf(point));
        });
    });
}

void NameSpaces::add(gps::Dictionary& data)
{
    forEachRecord(data, "waypoint", [&](gps::Dictionary& record) {
        if (isGeocache(record))
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

std::vector<TextChange> fitNames(gps::Dictionary& data, const gps::Dictionary& onDevice,
                                 const TextRules& rules)
{
    NameSpaces spaces{rules};
    spaces.addOnDevice(onDevice);
    spaces.add(data);

    Fitting fitting{rules};
    for (const auto* const things : {&spaces.waypoints, &spaces.geocaches, &spaces.routes}) {
        for (const auto& named : *things)
            fitting.fitTexts(named);
    }
    fitting.fitNames(spaces.waypoints, std::move(spaces.waypointNames),
                     std::move(spaces.pointNames));
    fitting.fitNames(spaces.geocaches, std::move(spaces.geocacheNames));
    fitting.fitNames(spaces.routes, std::move(spaces.routeNames));
    return fitting.takeChanges();
}

} // namespace host
