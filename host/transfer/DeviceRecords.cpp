// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceRecords.h"

#include "host/fitting/RecordList.h"
#include "host/formats/CollectionWriter.h"
#include "host/operations/Operation.h"

#include <cmath>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host {
namespace {

// Half of what a device's five decimals of a minute can tell apart, in degrees, and a little for
// the arithmetic.
constexpr double kSamePlace = 0.5e-5 / 60 * 1.01;

class Gathering final : public CollectionWriter {
public:
    [[nodiscard]] gps::Dictionary takeData()
    {
        return {{"waypoint", std::move(wayPoints_)}, {"route", std::move(routes_)}};
    }

private:
    static gps::Dictionary whole(const gps::GPSPoint& point, const gps::Dictionary& record)
    {
        gps::Dictionary copy = record;
        copy.set(gps::kPointKey, point);
        return copy;
    }

    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override
    {
        wayPoints_.emplace_back(whole(point, record));
    }
    void beginRoute(const gps::Dictionary& route) override { route_ = route; }
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override
    {
        points_.emplace_back(whole(point, record));
    }
    void endRoute() override
    {
        route_.set("points", std::exchange(points_, {}));
        routes_.emplace_back(std::exchange(route_, {}));
    }
    void beginTrack(const gps::Dictionary&) override {}
    void trackPoint(const gps::GPSPoint&) override {}
    void endTrack() override {}
    [[nodiscard]] std::optional<gps::Error> finish() override { return std::nullopt; }

    gps::Array wayPoints_;
    gps::Array routes_;
    gps::Dictionary route_;
    gps::Array points_;
};

template <typename DictionaryType, typename Visitor>
void forEachRoutePoint(DictionaryType& data, const Visitor& visit)
{
    forEachRecord(data, "route", [&](auto& route) { forEachRecord(route, "points", visit); });
}

std::string textIn(const gps::Dictionary& record, std::string_view key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? *text : std::string{};
}

bool isSamePlace(const gps::Dictionary& wanted, const gps::Dictionary& present)
{
    const auto* const a = gps::findPoint(wanted);
    const auto* const b = gps::findPoint(present);
    return a != nullptr && b != nullptr && std::abs(a->latitude - b->latitude) <= kSamePlace &&
           std::abs(a->longitude - b->longitude) <= kSamePlace &&
           std::trunc(a->altitude) == std::trunc(b->altitude);
}

// Whether two symbols are one to the device. Only the driver knows: it is asked what it would write
// of a record with either.
class Symbols {
public:
    explicit Symbols(const gps::GPSFileDevice& device) : device_(device) {}

    bool areAlike(const std::string& a, const std::string& b)
    {
        if (a == b)
            return true;
        const auto [known, isNew] = alike_.try_emplace({a, b}, false);
        if (isNew)
            known->second = written(a) == written(b);
        return known->second;
    }

private:
    [[nodiscard]] std::vector<std::string> written(const std::string& symbol) const
    {
        gps::Dictionary point{{"name", "Symbol"}, {gps::kPointKey, gps::GPSPoint{}}};
        if (!symbol.empty())
            point.set("symbol", symbol);
        const auto plan = device_.planSend({{"waypoint", gps::Array{std::move(point)}}});
        std::vector<std::string> contents;
        for (const auto& file : plan.files)
            contents.push_back(file.content);
        return contents;
    }

    const gps::GPSFileDevice& device_;
    std::map<std::pair<std::string, std::string>, bool> alike_;
};

} // namespace

std::optional<gps::Error> readDevice(gps::GPSPlugInProtocol& driver, gps::Dictionary& data)
{
    Gathering gathering;
    const gps::Dictionary options{{"waypoints", true}, {"routes", true}, {"tracks", false}};
    const auto outcome = runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return driver.gpsRunAcquire(status, options);
        },
        [&](const EventBatch& batch) {
            for (const auto& event : batch)
                gathering.event(event);
        });
    (void)gathering.close(); // its finish never fails
    data = gathering.takeData();
    return outcome.error;
}

void useRecordsOfDevice(gps::Dictionary& data, const gps::Dictionary& onDevice,
                        const gps::GPSFileDevice& device)
{
    std::unordered_multimap<std::string, const gps::Dictionary*> byName;
    forEachRoutePoint(onDevice, [&](const gps::Dictionary& point) {
        byName.emplace(textIn(point, "name"), &point);
    });
    Symbols symbols{device};
    const auto isWrittenAs = [&](const gps::Dictionary& wanted, const gps::Dictionary& present) {
        return isSamePlace(wanted, present) &&
               textIn(wanted, "comment") == textIn(present, "comment") &&
               symbols.areAlike(textIn(wanted, "symbol"), textIn(present, "symbol"));
    };
    forEachRoutePoint(data, [&](gps::Dictionary& point) {
        for (auto [at, end] = byName.equal_range(textIn(point, "name")); at != end; ++at) {
            if (isWrittenAs(point, *at->second)) {
                point = *at->second;
                return;
            }
        }
    });
}

} // namespace host
