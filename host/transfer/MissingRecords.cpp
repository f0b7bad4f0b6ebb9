// SPDX-License-Identifier: MIT

#include "host/transfer/MissingRecords.h"

#include "host/formats/CollectionWriter.h"
#include "host/operations/Operation.h"
#include "host/points/Points.h"

#include <cmath>
#include <cstdint>
#include <unordered_set>

namespace host {
namespace {

constexpr std::size_t kMostTold = 10;

// Places as finely as a device writes them: five decimals of a minute.
class Places {
public:
    void add(const gps::GPSPoint& point)
    {
        if (isOnGlobe(point))
            keys_.insert(keyOf(unitsOf(point.latitude), unitsOf(point.longitude)));
    }

    // What was written and read may have come out one unit beside.
    [[nodiscard]] bool contain(const gps::GPSPoint& point) const
    {
        if (!isOnGlobe(point))
            return false;
        for (const int north : {0, -1, 1}) {
            for (const int east : {0, -1, 1}) {
                if (keys_.contains(
                        keyOf(unitsOf(point.latitude) + north, unitsOf(point.longitude) + east)))
                    return true;
            }
        }
        return false;
    }

private:
    static std::int64_t unitsOf(double degrees) { return std::llround(degrees * 6e6); }
    static std::int64_t keyOf(std::int64_t latitude, std::int64_t longitude)
    {
        constexpr std::int64_t kLongitudes = 4'000'000'000; // more than there are
        return latitude * kLongitudes + longitude;
    }

    std::unordered_set<std::int64_t> keys_;
};

// The places in the files written, kind by kind.
class Written final : public CollectionWriter {
public:
    Places waypoints;
    Places routePoints;
    Places trackPoints;

private:
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary&) override
    {
        waypoints.add(point);
    }
    void beginRoute(const gps::Dictionary&) override {}
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary&) override
    {
        routePoints.add(point);
    }
    void endRoute() override {}
    void beginTrack(const gps::Dictionary&) override {}
    void trackPoint(const gps::GPSPoint& point) override { trackPoints.add(point); }
    void endTrack() override {}
    [[nodiscard]] std::optional<gps::Error> finish() override { return std::nullopt; }
};

Outcome acquire(gps::GPSPlugInProtocol& driver, const gps::Dictionary& options, Written& written)
{
    return runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return driver.gpsRunAcquire(status, options);
        },
        [&](const EventBatch& batch) {
            for (const auto& event : batch)
                written.event(event);
        });
}

template <typename Visitor>
void forEachRecord(const gps::Dictionary& data, std::string_view key, const Visitor& visit)
{
    const auto* const records = data.findArray(key);
    if (records == nullptr)
        return;
    const gps::Dictionary empty;
    for (const auto& value : *records) {
        const auto* const record = value.as<gps::Dictionary>();
        visit(record != nullptr ? *record : empty);
    }
}

class Missing {
public:
    void look(std::string_view kind, const gps::Dictionary& record, const Places& places)
    {
        const auto* const point = gps::findPoint(record);
        if (point != nullptr && places.contain(*point))
            return;
        if (++count_ > kMostTold)
            return;
        const auto* const name = record.findString("name");
        sentences_.push_back("The " + std::string{kind} +
                             (name != nullptr ? " \"" + *name + '"' : " without a name") +
                             " is not on the device.");
    }

    [[nodiscard]] std::vector<std::string> take()
    {
        if (count_ > kMostTold)
            sentences_.push_back("And " + std::to_string(count_ - kMostTold) +
                                 " more records are not on the device.");
        return std::move(sentences_);
    }

private:
    std::size_t count_ = 0;
    std::vector<std::string> sentences_;
};

// A file of routes that begins with their points is refused by an import; so these are taken from
// the device. Where another file of it stops that, nothing can be said.
void lookForRoutes(gps::GPSPlugInProtocol& driver, const gps::Dictionary& data, Missing& missing)
{
    if (!data.contains("route"))
        return;
    Written onDevice;
    const auto outcome =
        acquire(driver, {{"waypoints", false}, {"routes", true}, {"tracks", false}}, onDevice);
    if (outcome.error || !outcome.loggedErrors.empty())
        return;
    forEachRecord(data, "route", [&](const auto& route) {
        forEachRecord(route, "points", [&](const auto& point) {
            missing.look("route point", point, onDevice.routePoints);
        });
    });
}

} // namespace

std::vector<std::string> missingRecords(gps::GPSPlugInProtocol& driver, const gps::Dictionary& data,
                                        const gps::SendPlan& plan)
{
    Written written;
    for (const auto& file : plan.files) {
        if (file.action != gps::PlannedFile::Action::kSkip)
            (void)acquire(driver, {{kSourcePathKey, file.path}},
                          written); // what it does not yield is missing
    }
    Missing missing;
    forEachRecord(data, "waypoint",
                  [&](const auto& record) { missing.look("waypoint", record, written.waypoints); });
    lookForRoutes(driver, data, missing);
    forEachRecord(data, "track", [&](const auto& track) {
        forEachRecord(track, "points", [&](const auto& point) {
            missing.look("track point", point, written.trackPoints);
        });
    });
    return missing.take();
}

} // namespace host
