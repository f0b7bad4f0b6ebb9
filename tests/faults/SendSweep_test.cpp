// SPDX-License-Identifier: MIT
// Sends of random records to random receivers by the real driver. The names are few and alike, so
// that nearly every send has names that clash with one another or with the receiver's. After each
// send, everything that was sent is on the receiver; what nothing sent replaces is there as it was;
// and a second send of the same data has nothing to do.

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/Send.h"
#include "host/words/PlanReport.h"
#include "plugin/fsdevice/MagellanGPSPlugin.h"
#include "support/ReceiverFolder.h"
#include "support/Sentence.h"

#include <gps/Geocache.h>

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using gps::Array;
using gps::Dictionary;
using testing::IsEmpty;

constexpr unsigned kSends = MAGELLAN_SANITIZED ? 20 : 150;

constexpr std::array kNames{"P",
                            "P 1",
                            "P 2",
                            "P 3",
                            "Q",
                            "Q 1",
                            "P 10",
                            "ABCDEFGHIJKLMNOPQRST",
                            "ABCDEFGHIJKLMNOPQR 1",
                            "ABCDEFGHIJKLMNOPQR",
                            "GC1"};
// Those that no receiver can hold come last.
constexpr std::array kSentNames{"P",   "P 1", "P 2",      "Q", "ABCDEFGHIJKLMNOPQRST",
                                "GC1", "P$",  "\xC3\x89", "",  "ABCDEFGHIJKLMNOPQRSTU"};
constexpr std::array kRouteNames{"R", "R 1", "R 2", "S"};
constexpr std::array kSentRouteNames{"R", "S", "", "R$"};
constexpr std::array kSymbols{"", "Campground", "Resort"};

class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}

    // From 0 to one less than `sides`.
    std::size_t roll(std::size_t sides) { return engine_() % sides; }

    template <typename List> auto of(const List& list) { return list[roll(list.size())]; }

private:
    std::mt19937 engine_;
};

template <typename List> Dictionary somePoint(Dice& dice, const List& names)
{
    const auto altitude = static_cast<double>(dice.roll(2)) * 5;
    const auto latitude = dice.of(std::array{46.1, 46.2, 46.2 + 1e-8, -46.1});
    return {{"name", dice.of(names)},
            {"comment", dice.of(std::array{"", "", "c"})},
            {"symbol", dice.of(kSymbols)},
            {"point", gps::GPSPoint{latitude, 7, altitude, 0, 0}}};
}

template <typename List> Dictionary someCache(Dice& dice, const List& names)
{
    auto cache = somePoint(dice, names);
    cache.set("symbol", "Geocache");
    if (dice.roll(2) == 0)
        cache.set("geocacheHint", "below the stone");
    return cache;
}

Dictionary someData(Dice& dice)
{
    Array waypoints;
    for (auto count = dice.roll(5); count > 0; --count)
        waypoints.emplace_back(somePoint(dice, kSentNames));
    for (auto count = dice.roll(4); count > 1; --count)
        waypoints.emplace_back(someCache(dice, kSentNames));
    Array routes;
    for (auto count = dice.roll(4); count > 0; --count) {
        Array points;
        for (auto more = dice.roll(5) + 1; more > 0; --more)
            points.emplace_back(somePoint(dice, kSentNames));
        routes.emplace_back(Dictionary{{"name", dice.of(kSentRouteNames)},
                                       {"comment", dice.of(std::array{"", "hi"})},
                                       {"points", std::move(points)}});
    }
    Dictionary data;
    host::appendRecords(data, "waypoint", waypoints);
    host::appendRecords(data, "route", routes);
    return data;
}

std::string lineOf(std::string_view kind, const Dictionary& record)
{
    const auto& point = *gps::findPoint(record);
    const auto minutes = std::abs(point.latitude) > 46.15 ? "4612.00000," : "4606.00000,";
    auto line = std::string{kind} + ',' + minutes + (point.latitude < 0 ? 'S' : 'N') +
                ",00700.00000,E,000000" + (point.altitude > 0 ? '5' : '0') + ",M," +
                *record.findString("name");
    const auto comment = *record.findString("comment");
    if (kind == "PMGNGEO")
        return support::sentence(line + ',' + comment + ",," +
                                 std::string{host::textIn(record, "geocacheHint")} + ",,,,,");
    const auto& symbol = *record.findString("symbol");
    return support::sentence(line + ',' + comment + ',' +
                             (symbol.empty()       ? "a"
                              : symbol == "Resort" ? "ab"
                                                   : "j"));
}

class Sweep {
public:
    explicit Sweep(unsigned seed) : dice_(seed)
    {
        receiver_.unitFile("12345");
        for (const auto* name : {"My POIs", "Geocaches", "Routes", "Track Logs"})
            receiver_.folder().makeFolder(name);
        receiver_.languageFile(
            {"MyPOIs=My POIs", "Geocaches=Geocaches", "Routes=Routes", "TrackLogs=Track Logs"});
        for (const auto* path : {"My POIs/Default POI File.upt", "My POIs/a.upt"})
            putPoints(path, "PMGNWPL");
        putPoints("Geocaches/Default Geocache File.gs", "PMGNGEO");
        for (const auto* path : {"Routes/Default Route File.rte", "Routes/a.rte"})
            putRoutes(path);
        data_ = someData(dice_);
        const support::TestFolders folders{{receiver_.path()}};
        driver_ = magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    [[nodiscard]] host::PreparedSend prepare(bool isDryRun) const
    {
        return host::prepareSend({driver_, receiver_.path()},
                                 {.data = data_, .isDryRun = isDryRun});
    }

    [[nodiscard]] const Dictionary& data() const noexcept { return data_; }

    // The waypoints, geocaches and routes of the receiver as texts without names.
    [[nodiscard]] std::multiset<std::string> contents() const
    {
        std::multiset<std::string> texts;
        dynamic_cast<const gps::GPSFileDevice&>(*driver_).takeSnapshot()->visitRecords(
            [&](std::string_view, const Dictionary& record) {
                texts.insert(textOf(record, false));
            });
        return texts;
    }

    // The records of the receiver as texts, with the file that each is in. Points of a file of
    // routes are records of their own, too.
    [[nodiscard]] std::map<std::string, std::string> held() const
    {
        std::map<std::string, std::string> records;
        const auto& device = dynamic_cast<const gps::GPSFileDevice&>(*driver_);
        const auto& unused = dynamic_cast<const gps::GPSUnusedRoutePoints&>(*driver_);
        const auto snapshot = device.takeSnapshot();
        for (const auto& file : snapshot->files()) {
            const auto add = [&](std::string_view kind, const Dictionary& record) {
                records[file.path + '\n' + std::string{kind} + ' ' + *record.findString("name")] =
                    textOf(record);
            };
            const auto addPoint = [&](const Dictionary& point) { add("point", point); };
            device.visitRecordsIn(file.path, file.content,
                                  [&](std::string_view kind, const Dictionary& record) {
                                      add(kind, record);
                                      host::forEachRecord(record, "points", addPoint);
                                  });
            unused.visitUnusedRoutePointsIn(file.path, file.content, addPoint);
        }
        return records;
    }

    // What the receiver stores of a record, and of a route with its points.
    [[nodiscard]] std::string textOf(const Dictionary& record, bool withNames = true) const
    {
        const auto& device = dynamic_cast<const gps::GPSFileDevice&>(*driver_);
        std::string text{withNames ? host::textIn(record, "name") : ""};
        for (const auto* key : {"comment", "geocacheHint"})
            text.append(1, ',').append(host::textIn(record, key));
        if (const auto* const point = gps::findPoint(record)) {
            text += ',' + std::to_string(host::DevicePosition::of(*point)->key()) + ',' +
                    std::to_string(static_cast<int>(point->altitude));
            if (!gps::isGeocache(record))
                text += ',' + device.deviceSymbol(host::textIn(record, "symbol"));
        }
        host::forEachRecord(record, "points", [&](const Dictionary& point) {
            text += '\n' + textOf(point, withNames);
        });
        return text;
    }

private:
    void putPoints(const char* path, const char* kind)
    {
        std::map<std::string, std::string> lines; // by name
        for (auto count = dice_.roll(6); count > 0; --count) {
            const auto record = somePoint(dice_, kNames);
            lines[*record.findString("name")] = lineOf(kind, record);
        }
        putLines(path, lines, {});
    }

    void putRoutes(const char* path)
    {
        std::map<std::string, std::string> lines; // by name
        std::vector<std::string> used;
        for (auto count = dice_.roll(5) + 1; count > 0; --count) {
            const auto record = somePoint(dice_, kNames);
            const auto& name = *record.findString("name");
            lines[name] = lineOf("PMGNWPL", record);
            used.push_back(name);
        }
        std::map<std::string, std::string> routes;
        for (auto count = dice_.roll(3); count > 0; --count) {
            const std::string name = dice_.of(kRouteNames);
            routes[name] = support::sentence("PMGNRTE,1,1,c,1," + name + ',' + dice_.of(used) +
                                             ",a," + dice_.of(used) + ",a");
        }
        putLines(path, lines, routes);
    }

    void putLines(const char* path, const std::map<std::string, std::string>& first,
                  const std::map<std::string, std::string>& then) const
    {
        std::string text;
        for (const auto* const lines : {&first, &then}) {
            for (const auto& [name, line] : *lines)
                text += line + "\r\n";
        }
        if (!text.empty())
            receiver_.folder().put(path, text);
    }

    support::ReceiverFolder receiver_;
    Dice dice_;
    Dictionary data_;
    host::Driver driver_;
};

// The kinds and names of the records that a send may replace: those that are good in the data.
std::set<std::string> goodNames(const Dictionary& sent,
                                const std::vector<host::TextChange>& changes)
{
    std::set<std::string> names;
    for (const auto* const key : {"waypoint", "route"})
        host::forEachRecord(sent, key, [&](const Dictionary& record) {
            names.insert(std::string{key} + ' ' + *record.findString("name"));
        });
    for (const auto& change : changes) {
        if (change.key == "name" && change.kind != "route point")
            names.erase((change.kind == "route" ? "route " : "waypoint ") + change.after);
    }
    return names;
}

// Whether a record of the receiver may be replaced by one of these names.
bool mayBeReplaced(const std::string& record, const std::set<std::string>& names)
{
    return record.find("/Default ") != std::string::npos &&
           names.contains(record.substr(record.find('\n') + 1));
}

void expectNothingElseChanged(const std::map<std::string, std::string>& before,
                              const std::map<std::string, std::string>& after,
                              const std::set<std::string>& names)
{
    for (const auto& [record, text] : before) {
        const auto now = after.find(record);
        if (now != after.end() && now->second == text)
            continue;
        EXPECT_TRUE(mayBeReplaced(record, names)) << record << '\n' << text;
    }
}

// Each record that differs from the others is on the receiver, under whatever name.
void expectAllThere(const Sweep& sweep, std::multiset<std::string> there)
{
    std::set<std::string> sent;
    for (const auto* const key : {"waypoint", "route"})
        host::forEachRecord(sweep.data(), key, [&](const Dictionary& record) {
            if (!sent.insert(key + sweep.textOf(record)).second)
                return;
            const auto found = there.find(sweep.textOf(record, false));
            ASSERT_NE(found, there.end()) << sweep.textOf(record);
            there.erase(found);
        });
}

void sendTwice(const Sweep& sweep)
{
    const auto before = sweep.held();
    const auto dryRun = sweep.prepare(true);
    EXPECT_THAT(host::planErrors(dryRun), IsEmpty());
    {
        const auto send = sweep.prepare(false);
        EXPECT_EQ(host::planReport(send), host::planReport(dryRun));
        const auto report = host::performSend(send);
        EXPECT_TRUE(report.isComplete());
        EXPECT_THAT(host::sendErrors(report, send), IsEmpty());
        const auto after = sweep.held();
        expectAllThere(sweep, sweep.contents());
        expectNothingElseChanged(before, after, goodNames(*send.request.data, send.textChanges));
    }
    const auto again = sweep.prepare(false);
    EXPECT_TRUE(again.request.data->empty()) << host::planReport(again);
    EXPECT_EQ(host::plannedWrites(again.plan), 0U);
    EXPECT_EQ(again.obstacle, std::nullopt);
}

TEST(SendSweep, EachSendKeepsWhatTheReceiverHoldsAndHasNothingToDoTheSecondTime)
{
    for (unsigned seed = 0; seed < kSends; ++seed) {
        SCOPED_TRACE(seed);
        sendTwice(Sweep{seed});
    }
}

} // namespace
